#include "settings/clsVar.h"

#include "settings/IniStore.h"
#include "core/modUtilityString.h"

SettingTypeError::SettingTypeError(const QString& key, const QString& text)
    : std::runtime_error(QStringLiteral("setting %1: \"%2\" is no number").arg(key, text).toStdString())
    , key_(key)
    , text_(text)
{
}

void clsVarBoolean::LoadStateFromFile(const QString& iniFile, const QString& section)
{
    const QString fallback = mDataDefault ? QStringLiteral("True") : QStringLiteral("False");
    const QString text = TrimAtNull(IniReadString(iniFile, section, mName, fallback)).toUpper();
    mData = text != QLatin1String("FALSE");
}

void clsVarBoolean::SaveStateToFile(const QString& iniFile, const QString& section) const
{
    IniWriteString(iniFile, section, mName, mData ? QStringLiteral("TRUE") : QStringLiteral("FALSE"));
}

void clsVarBoolean::CreateReport_ActiveData(QTextStream& out) const
{
    out << "   " << mName << " = " << (mData ? "True" : "False") << '\n';
}

void clsVarLong::LoadStateFromFile(const QString& iniFile, const QString& section)
{
    const QString text = TrimAtNull(IniReadString(iniFile, section, mName, mDataDefault));
    qint32 value = 0;
    if (!TextToLong(text, value))
        throw SettingTypeError(mName, text);
    mData = value;
}

void clsVarLong::SaveStateToFile(const QString& iniFile, const QString& section) const
{
    IniWriteString(iniFile, section, mName, QString::number(mData));
}

void clsVarLong::CreateReport_ActiveData(QTextStream& out) const
{
    out << "   " << mName << " = " << mData << '\n';
}

void clsVarString::LoadStateFromFile(const QString& iniFile, const QString& section)
{
    mData = TrimAtNull(IniReadString(iniFile, section, mName, mDataDefault));
}

void clsVarString::SaveStateToFile(const QString& iniFile, const QString& section) const
{
    IniWriteString(iniFile, section, mName, mData);
}

void clsVarString::CreateReport_ActiveData(QTextStream& out) const
{
    out << "   " << mName << " = " << mData << '\n';
}

#pragma once
// One named persisted value each: it knows its INI key (Name), its default
// and its value, reads itself from and writes itself to a section of the INI
// file, and prints itself into a report. Option sets are lists of these.
//
// Data() before the first LoadStateFromFile gives the initial value of the
// class (false, 0, "Not Initialized"), not the default: the default is only
// what a load falls back on. Assigning a plain value assigns Data:
//     opts.bIgnoreCase = true;   opts.lLineBracket = 3;   opts.sFileOriginal = path;

#include <QString>
#include <QTextStream>
#include <QtGlobal>

#include <stdexcept>

// A clsVarLong whose stored text is no number; the load stops there.
class SettingTypeError : public std::runtime_error {
public:
    SettingTypeError(const QString& key, const QString& text);
    const QString& key() const { return key_; }
    const QString& text() const { return text_; }

private:
    QString key_;
    QString text_;
};

class clsVarBase {
public:
    virtual ~clsVarBase() = default;

    const QString& Name() const { return mName; }
    void setName(const QString& name) { mName = name; }

    virtual void LoadStateFromFile(const QString& iniFile, const QString& section) = 0;
    virtual void SaveStateToFile(const QString& iniFile, const QString& section) const = 0;
    // One line: three blanks, Name, " = ", the value.
    virtual void CreateReport_ActiveData(QTextStream& out) const = 0;

protected:
    clsVarBase() = default;
    explicit clsVarBase(const QString& name) : mName(name) {}
    clsVarBase(const clsVarBase&) = default;
    clsVarBase& operator=(const clsVarBase&) = default;

    QString mName = QStringLiteral("Not Initialized");
};

// Stored as "TRUE" or "FALSE"; only "FALSE", in any case, reads as false, so
// an empty value, "0" or "No" reads as true.
class clsVarBoolean : public clsVarBase {
public:
    clsVarBoolean() = default;
    clsVarBoolean(const QString& name, bool dataDefault) : clsVarBase(name), mDataDefault(dataDefault) {}

    bool DataDefault() const { return mDataDefault; }
    void setDataDefault(bool value) { mDataDefault = value; }
    bool Data() const { return mData; }
    void setData(bool value) { mData = value; }
    clsVarBoolean& operator=(bool value)
    {
        mData = value;
        return *this;
    }

    void LoadStateFromFile(const QString& iniFile, const QString& section) override;
    void SaveStateToFile(const QString& iniFile, const QString& section) const override;
    void CreateReport_ActiveData(QTextStream& out) const override;

private:
    bool mDataDefault = false;
    bool mData = false;
};

// A 32-bit signed number, stored in decimal. The default is kept as text
// because it is what the read falls back on; a stored text that is no number
// makes LoadStateFromFile throw SettingTypeError (so does a default that was
// never set, which reads as "Not Initialized").
class clsVarLong : public clsVarBase {
public:
    clsVarLong() = default;
    clsVarLong(const QString& name, qint32 dataDefault)
        : clsVarBase(name), mDataDefault(QString::number(dataDefault)) {}

    const QString& DataDefault() const { return mDataDefault; }
    void setDataDefault(const QString& text) { mDataDefault = text; }
    void setDataDefault(qint32 value) { mDataDefault = QString::number(value); }
    qint32 Data() const { return mData; }
    void setData(qint32 value) { mData = value; }
    clsVarLong& operator=(qint32 value)
    {
        mData = value;
        return *this;
    }

    void LoadStateFromFile(const QString& iniFile, const QString& section) override;
    void SaveStateToFile(const QString& iniFile, const QString& section) const override;
    void CreateReport_ActiveData(QTextStream& out) const override;

private:
    QString mDataDefault = QStringLiteral("Not Initialized");
    qint32 mData = 0;
};

// Text, stored as it is; the store cuts it at 499 characters on the next load.
class clsVarString : public clsVarBase {
public:
    clsVarString() = default;
    clsVarString(const QString& name, const QString& dataDefault) : clsVarBase(name), mDataDefault(dataDefault) {}

    const QString& DataDefault() const { return mDataDefault; }
    void setDataDefault(const QString& value) { mDataDefault = value; }
    const QString& Data() const { return mData; }
    void setData(const QString& value) { mData = value; }
    clsVarString& operator=(const QString& value)
    {
        mData = value;
        return *this;
    }

    void LoadStateFromFile(const QString& iniFile, const QString& section) override;
    void SaveStateToFile(const QString& iniFile, const QString& section) const override;
    void CreateReport_ActiveData(QTextStream& out) const override;

private:
    QString mDataDefault = QStringLiteral("Not Initialized");
    QString mData = QStringLiteral("Not Initialized");
};

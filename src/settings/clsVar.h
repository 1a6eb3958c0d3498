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
#include <utility>

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

// The value part the three kinds share; assigning a plain value assigns
// Data. Self is the kind itself, so that an assignment can be chained.
template <class T, class Self>
class clsVarOf : public clsVarBase {
public:
    const T& Data() const { return mData; }
    void setData(const T& value) { mData = value; }
    Self& operator=(const T& value)
    {
        mData = value;
        return static_cast<Self&>(*this);
    }

protected:
    explicit clsVarOf(T initial) : mData(std::move(initial)) {}
    clsVarOf(const QString& name, T initial) : clsVarBase(name), mData(std::move(initial)) {}

    T mData;
};

// Stored as "TRUE" or "FALSE"; only "FALSE", in any case, reads as false, so
// an empty value, "0" or "No" reads as true.
class clsVarBoolean : public clsVarOf<bool, clsVarBoolean> {
public:
    clsVarBoolean() : clsVarOf(false) {}
    clsVarBoolean(const QString& name, bool dataDefault) : clsVarOf(name, false), mDataDefault(dataDefault) {}
    using clsVarOf::operator=;

    bool DataDefault() const { return mDataDefault; }
    void setDataDefault(bool value) { mDataDefault = value; }

    void LoadStateFromFile(const QString& iniFile, const QString& section) override;
    void SaveStateToFile(const QString& iniFile, const QString& section) const override;
    void CreateReport_ActiveData(QTextStream& out) const override;

private:
    bool mDataDefault = false;
};

// A 32-bit signed number, stored in decimal. The default is kept as text
// because it is what the read falls back on; a stored text that is no number
// makes LoadStateFromFile throw SettingTypeError (so does a default that was
// never set, which reads as "Not Initialized").
class clsVarLong : public clsVarOf<qint32, clsVarLong> {
public:
    clsVarLong() : clsVarOf(0) {}
    clsVarLong(const QString& name, qint32 dataDefault)
        : clsVarOf(name, 0), mDataDefault(QString::number(dataDefault)) {}
    using clsVarOf::operator=;

    const QString& DataDefault() const { return mDataDefault; }
    void setDataDefault(const QString& text) { mDataDefault = text; }
    void setDataDefault(qint32 value) { mDataDefault = QString::number(value); }

    void LoadStateFromFile(const QString& iniFile, const QString& section) override;
    void SaveStateToFile(const QString& iniFile, const QString& section) const override;
    void CreateReport_ActiveData(QTextStream& out) const override;

private:
    QString mDataDefault = QStringLiteral("Not Initialized");
};

// Text, stored as it is; the store cuts it at 499 characters on the next load.
class clsVarString : public clsVarOf<QString, clsVarString> {
public:
    clsVarString() : clsVarOf(QStringLiteral("Not Initialized")) {}
    clsVarString(const QString& name, const QString& dataDefault)
        : clsVarOf(name, QStringLiteral("Not Initialized")), mDataDefault(dataDefault) {}
    using clsVarOf::operator=;

    const QString& DataDefault() const { return mDataDefault; }
    void setDataDefault(const QString& value) { mDataDefault = value; }

    void LoadStateFromFile(const QString& iniFile, const QString& section) override;
    void SaveStateToFile(const QString& iniFile, const QString& section) const override;
    void CreateReport_ActiveData(QTextStream& out) const override;

private:
    QString mDataDefault = QStringLiteral("Not Initialized");
};

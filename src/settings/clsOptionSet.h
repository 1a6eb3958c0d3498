#pragma once
// Common shape of the two option sets: a section name and an ordered list of
// persisted values, loaded and saved one after another in that order.

#include "settings/clsVar.h"

#include <QString>
#include <QTextStream>

#include <vector>

class clsOptionSet {
public:
    virtual ~clsOptionSet() = default;

    // The INI section; a viewer sets it to its own description ("1_CompareFile")
    // before the first load.
    const QString& Section() const { return mSection; }
    void setSection(const QString& section) { mSection = section; }

    // Loads every value in order. A number setting whose text is no number
    // throws SettingTypeError, and the values behind it keep what they had.
    void LoadStateFromFile(const QString& iniFile);
    void SaveStateToFile(const QString& iniFile) const;
    void CreateReport_ActiveData(QTextStream& out) const;

    // The values in load and save order.
    virtual std::vector<clsVarBase*> Items() = 0;
    std::vector<const clsVarBase*> Items() const;

protected:
    explicit clsOptionSet(const QString& section) : mSection(section) {}
    clsOptionSet(const clsOptionSet&) = default;
    clsOptionSet& operator=(const clsOptionSet&) = default;

private:
    QString mSection;
};

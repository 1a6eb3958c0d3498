#include "settings/clsOptionSet.h"

#include "settings/IniStore.h"

std::vector<const clsVarBase*> clsOptionSet::Items() const
{
    const auto items = const_cast<clsOptionSet*>(this)->Items();
    return {items.begin(), items.end()};
}

void clsOptionSet::LoadStateFromFile(const QString& iniFile)
{
    IniBatch batch(iniFile);
    for (clsVarBase* item : Items())
        item->LoadStateFromFile(iniFile, mSection);
}

void clsOptionSet::SaveStateToFile(const QString& iniFile) const
{
    IniBatch batch(iniFile);
    for (const clsVarBase* item : Items())
        item->SaveStateToFile(iniFile, mSection);
}

void clsOptionSet::CreateReport_ActiveData(QTextStream& out) const
{
    for (const clsVarBase* item : Items())
        item->CreateReport_ActiveData(out);
}

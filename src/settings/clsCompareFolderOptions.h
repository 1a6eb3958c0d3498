#pragma once
// What one folder comparison viewer remembers: which folders, which files and
// which kinds of result to show. 13 persisted values, keyed by member name,
// loaded and saved in the order declared here. A first start compares the
// root folder with itself, all files, every kind of result shown.

#include "settings/clsOptionSet.h"

class clsCompareFolderOptions : public clsOptionSet {
public:
    // The section starts as a placeholder; the viewer sets its own.
    clsCompareFolderOptions() : clsOptionSet(QStringLiteral("CompareFolderOptions")) {}

    std::vector<clsVarBase*> Items() override;
    using clsOptionSet::Items;

    clsVarString sFolderOriginal{QStringLiteral("sFolderOriginal"), QStringLiteral("/")};
    clsVarString sFolderModified{QStringLiteral("sFolderModified"), QStringLiteral("/")};
    clsVarString sExtension{QStringLiteral("sExtension"), QStringLiteral("*.*")};
    clsVarBoolean bBeepWhenDone{QStringLiteral("bBeepWhenDone"), false};
    clsVarBoolean bStreamFindings{QStringLiteral("bStreamFindings"), true};
    clsVarBoolean bContentCompare{QStringLiteral("bContentCompare"), true};
    clsVarBoolean bShowOnlyInMaster{QStringLiteral("bShowOnlyInMaster"), true};
    clsVarBoolean bShowOnlyInSource{QStringLiteral("bShowOnlyInSource"), true};
    clsVarBoolean bShowSameInBothPlaces{QStringLiteral("bShowSameInBothPlaces"), true};
    clsVarBoolean bShowDifferentInBothPlaces{QStringLiteral("bShowDifferentInBothPlaces"), true};
    clsVarBoolean bIgnoreDateDifferences{QStringLiteral("bIgnoreDateDifferences"), false};
    clsVarBoolean bDoSubDirectories{QStringLiteral("bDoSubDirectories"), true};
    clsVarBoolean bShowDateOnlyDifferent{QStringLiteral("bShowDateOnlyDifferent"), true};
};

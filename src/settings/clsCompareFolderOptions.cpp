#include "settings/clsCompareFolderOptions.h"

std::vector<clsVarBase*> clsCompareFolderOptions::Items()
{
    return {&sFolderOriginal, &sFolderModified, &sExtension, &bBeepWhenDone,
            &bStreamFindings, &bContentCompare, &bShowOnlyInMaster, &bShowOnlyInSource,
            &bShowSameInBothPlaces, &bShowDifferentInBothPlaces, &bIgnoreDateDifferences,
            &bDoSubDirectories, &bShowDateOnlyDifferent};
}

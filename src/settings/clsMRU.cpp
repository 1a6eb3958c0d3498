#include "settings/clsMRU.h"

#include "settings/IniStore.h"
#include "core/modUtilityString.h"

void MruAddUniqueItem(QStringList& list, const QString& item)
{
    if (item.isEmpty())
        return;
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (list[i].compare(item, Qt::CaseInsensitive) == 0) {
            list.removeAt(i);
            break;
        }
    }
    list.append(item);
}

void MruReadSection(const QString& iniFile, const QString& section, QStringList& list)
{
    const QString empty = QString::fromLatin1(kMruEmptySlot);
    IniBatch batch(iniFile);
    for (int slot = 1; slot <= kMruSlots; ++slot) {
        const QString text = TrimAtNull(IniReadString(iniFile, section, section + QString::number(slot), empty));
        if (text != empty)
            MruAddUniqueItem(list, text);
    }
}

void MruWriteSection(const QString& iniFile, const QString& section, const QStringList& list)
{
    IniBatch batch(iniFile);
    for (qsizetype slot = kMruSlots, index = list.size(); slot >= 1 && index >= 1; --slot, --index)
        IniWriteString(iniFile, section, section + QString::number(slot), list[index - 1]);
}

void clsMRU::Setup(qint32 maximum, const QString& iniFile, const QString& section)
{
    mItems.clear();
    mMaximum = maximum;
    mIniFile = iniFile;
    mSection = section;
    ReadIniFileIntoCollection();
}

void clsMRU::ShutDown()
{
    WriteCollectionToIniFile();
    mItems.clear();
}

void clsMRU::AddUniqueItemToCollection(const QString& item)
{
    MruAddUniqueItem(mItems, item);
}

void clsMRU::WriteCollectionToIniFile()
{
    MruWriteSection(mIniFile, mSection, mItems);
}

void clsMRU::ReadIniFileIntoCollection()
{
    MruReadSection(mIniFile, mSection, mItems);
}

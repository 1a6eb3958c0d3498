#pragma once
// A recent-items list: unique strings, oldest first, newest last, kept in its
// own INI section. In the file the keys are the section name followed by a
// slot number 1 to 20, and the newest item always sits in slot 20: three
// items occupy slots 18, 19 and 20. Items differing only in case are the same
// item; re-adding one moves it to the newest place with the new spelling.
// The list may grow past 20 during a run; only the 20 newest are written.

#include <QString>
#include <QStringList>
#include <QtGlobal>

// Number of slots in the file.
inline constexpr int kMruSlots = 20;

// A slot holding exactly this text counts as empty.
inline constexpr const char* kMruEmptySlot = "+-!#";

// The list routines on a plain list, for owners that keep their own lists
// (the find viewers share theirs).
void MruAddUniqueItem(QStringList& list, const QString& item);
void MruReadSection(const QString& iniFile, const QString& section, QStringList& list);
void MruWriteSection(const QString& iniFile, const QString& section, const QStringList& list);

class clsMRU {
public:
    // Binds the list to a file and section and reads it. maximum is kept for
    // its owner's information; the file always has 20 slots.
    void Setup(qint32 maximum, const QString& iniFile, const QString& section);
    // Writes the list and empties it.
    void ShutDown();

    // Appends item as the newest, removing an older equal one (case aside).
    // An empty item is ignored.
    void AddUniqueItemToCollection(const QString& item);
    // Writes the newest items downward from slot 20. Lower slots that an
    // earlier, longer list left behind are not cleared.
    void WriteCollectionToIniFile();
    // Reads slots 1 to 20, oldest first, into the list.
    void ReadIniFileIntoCollection();

    qint32 Count() const { return qint32(mItems.size()); }
    // Oldest first; Items().last() is the newest.
    const QStringList& Items() const { return mItems; }

    qint32 Maximum() const { return mMaximum; }
    const QString& Section() const { return mSection; }
    const QString& IniFile() const { return mIniFile; }

private:
    QStringList mItems;
    qint32 mMaximum = 0;
    QString mSection;
    QString mIniFile;
};

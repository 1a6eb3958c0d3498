#pragma once
// A file viewer of its own INI file, shown offscreen, with every dialog
// answered by the test.

#include "filecompare/frmCompareFiles.h"
#include "core/modGlobal.h"
#include "support/qstring_print.h"
#include "support/recordingdialogs.h"
#include "support/findchild.h"
#include "support/testsupport.h"

#include <QFile>
#include <QStringList>
#include <gtest/gtest.h>

#include <memory>

namespace tvtest {

class ViewerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedIni_ = gsIniFile;
        gsIniFile = dir.qpath() + QStringLiteral("/Tallyvane.INI");
        viewer = std::make_unique<frmCompareFiles>();
        viewer->resize(1200, 800);
        viewer->Setup(QStringLiteral("1_CompareFile"), false);
        viewer->show();
        QObject::connect(viewer.get(), &frmCompareFiles::panelTextChanged, viewer.get(),
                         [this](int panel, const QString& text) {
                             if (panel == 3)
                                 panel3 << text;
                         });
    }
    void TearDown() override
    {
        viewer.reset();
        gsIniFile = savedIni_;
    }

    // A file in the test's folder with the given lines joined by "\n".
    QString textFile(const QString& name, const QStringList& lines)
    {
        const QString path = dir.qpath() + QLatin1Char('/') + name;
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(lines.join(QLatin1Char('\n')).toUtf8());
        return path;
    }

    // Loads both files and runs an interactive compare without reloading.
    void compare(const QString& original, const QString& modified)
    {
        ASSERT_TRUE(viewer->LoadOriginalFile(original));
        ASSERT_TRUE(viewer->LoadModifiedFile(modified));
        viewer->RefreshDisplay(false, true);
    }

    // A box of the viewer, and a control by its objectName.
    RichTextBox* box(qint32 id) const { return viewer->EditorBox(id); }
    template <class T>
    T* ui(const char* name) const
    {
        return child<T>(viewer, name);
    }

    // The records of the last compare as "c 1 1 1 1".
    QStringList records() const
    {
        QStringList out;
        for (const filecompare::Difference& d : viewer->Result().records())
            out << QStringLiteral("%1 %2 %3 %4 %5").arg(QChar(d.kind)).arg(d.lf).arg(d.ll).arg(d.rf).arg(d.rl);
        return out;
    }

    TempDir dir;
    RecordingDialogs dialogs;
    std::unique_ptr<frmCompareFiles> viewer;
    QStringList panel3;

private:
    QString savedIni_;
};

} // namespace tvtest

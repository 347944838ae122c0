// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The result screen's actions (save the report, compare, clean copy) run against the real
// engine, with the file dialogs answered by the test.
#include <sys/stat.h>
#include <unistd.h>

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>
#include <fstream>
#include <sstream>

#include "app/clean_copy_sheet.h"
#include "app/comparison_sheet.h"
#include "app/result_screen.h"
#include "app_test_support.h"
#include "report/text_report.h"

using namespace lumenscribe;
using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;
using lumenscribe::app::testing::inspectAndWait;

namespace {

std::filesystem::path testData(const char* name) {
  return std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / name;
}

void writeFile(const std::filesystem::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

std::string readFile(const std::filesystem::path& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

QStringList namesIn(const std::filesystem::path& folder) {
  QStringList names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names << QString::fromStdString(entry.path().filename().string());
  }
  names.sort();
  return names;
}

// Answers every file dialog with `answer` and remembers what was asked.
struct ScriptedChooser {
  std::vector<FileRequest> requests;
  std::optional<std::filesystem::path> answer;

  FileChooser chooser() {
    return [this](const FileRequest& request, QWidget*, FileChosen chosen) {
      requests.push_back(request);
      chosen(answer);
    };
  }
};

QString lines(std::initializer_list<const char*> texts) {
  QStringList all;
  for (const char* text : texts) all << QString::fromUtf8(text);
  return all.join('\n');
}

}  // namespace

class ActionsTest : public QObject {
  Q_OBJECT

 private slots:
  void saveReportWritesTheWholeReportOrNothing() {
    QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    ContentView view;
    ScriptedChooser dialogs;
    view.setFileChooser(dialogs.chooser());
    QVERIFY(inspectAndWait(view, fixture("notes.txt")));
    QSignalSpy finished(&view, &ContentView::actionFinished);

    // An older file of that name is replaced whole.
    const std::filesystem::path chosen = folder / "chosen.txt";
    writeFile(chosen, "an older report");
    dialogs.answer = chosen;
    view.resultScreen()->actionButton("Save Report")->click();
    QVERIFY(view.state().isSavingReport);
    QVERIFY(finished.wait(20000));
    QVERIFY(!view.state().isSavingReport);
    QCOMPARE(dialogs.requests.back().title, QStringLiteral("Save Lumenscribe Report"));
    QCOMPARE(dialogs.requests.back().prompt, QStringLiteral("Save Report"));
    QCOMPARE(dialogs.requests.back().proposedName, QStringLiteral("notes-Lumenscribe-Report.txt"));
    QCOMPARE(dialogs.requests.back().folder, fixture("notes.txt").parent_path());
    QCOMPARE(readFile(chosen), buildTextReport(*view.state().result));
    QCOMPARE(namesIn(folder), QStringList{"chosen.txt"});  // no temporary file left
    QVERIFY(!view.state().errorMessage);

    // Places that take no file: the message names the system's reason, and nothing is left.
    std::filesystem::create_directory(folder / "locked");
    ::chmod((folder / "locked").c_str(), 0555);
    struct Case {
      std::filesystem::path destination;
      std::errc error;
    };
    std::vector<Case> cases{{folder / "gone" / "report.txt", std::errc::no_such_file_or_directory}};
    // Root writes into read-only folders all the same.
    if (::geteuid() != 0)
      cases.push_back({folder / "locked" / "report.txt", std::errc::permission_denied});
    for (const Case& unwritable : cases) {
      dialogs.answer = unwritable.destination;
      view.resultScreen()->actionButton("Save Report")->click();
      QVERIFY(finished.wait(20000));
      QCOMPARE(view.state().errorMessage.value_or(QString()),
               QStringLiteral("Lumenscribe could not save the report: ") +
                   QString::fromStdString(std::make_error_code(unwritable.error).message()));
      QVERIFY(view.alert() && view.alert()->isVisible());
      view.alert()->button(QMessageBox::Ok)->click();
    }
    QCOMPARE(namesIn(folder / "locked"), QStringList{});
    QCOMPARE(namesIn(folder), (QStringList{"chosen.txt", "locked"}));

    // A cancelled dialog writes nothing and says nothing.
    dialogs.answer.reset();
    view.resultScreen()->actionButton("Save Report")->click();
    QVERIFY(!view.state().isSavingReport && !view.state().errorMessage);
  }

  void theComparisonSheetShowsTheCardsOfItsCase() {
    QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    QStringList first20, second20;
    for (int line = 1; line <= 20; ++line) {
      first20 << QStringLiteral("a%1").arg(line);
      second20 << (line == 1 ? QString() : QStringLiteral("b%1").arg(line));
    }
    writeFile(folder / "twenty-a.txt", first20.join('\n').toStdString());
    writeFile(folder / "twenty-b.txt", second20.join('\n').toStdString());
    writeFile(folder / "three.txt", lines({"one", "two", "three"}).toStdString());
    writeFile(folder / "five.txt", lines({"one", "two", "three", "four", "five"}).toStdString());
    writeFile(folder / "copy-a.txt", "same\n");
    writeFile(folder / "copy-b.txt", "same\n");

    struct Case {
      std::filesystem::path first;
      std::filesystem::path second;
      QStringList texts;  // shown, among others
      QStringList cards;
      int entries;  // "Line n" entries of the text card
    };
    const std::vector<Case> cases{
        {folder / "copy-a.txt",
         folder / "copy-b.txt",
         {"Exact Match", "5 bytes — match", "Match (SHA-256)"},
         {},
         0},
        {testData("image/png_with_exif.png"),
         testData("image/pixels_only.png"),
         {"Files Are Different", "Different (SHA-256)", "Picture Pixels Match", "96×64",
          "The files themselves differ, but Lumenscribe decoded both images and found the same "
          "pixel content."},
         {"pixelCard", "fingerprintCard"},
         0},
        {folder / "twenty-a.txt",
         folder / "twenty-b.txt",
         {"Text Differences", "20 changed lines", "Showing the first 12 differences.",
          "⟨blank line⟩", "a12", "b12"},
         {"fingerprintCard", "textCard"},
         12},
        {folder / "three.txt",
         folder / "five.txt",
         {"2 changed lines", "Showing all detected line differences.", "⟨no line⟩", "five"},
         {"fingerprintCard", "textCard"},
         2},
    };
    ContentView view;
    ScriptedChooser dialogs;
    view.setFileChooser(dialogs.chooser());
    QSignalSpy finished(&view, &ContentView::actionFinished);
    for (const Case& comparison : cases) {
      QVERIFY(inspectAndWait(view, comparison.first));
      dialogs.answer = comparison.second;
      view.resultScreen()->actionButton("Compare")->click();
      QVERIFY(view.state().isComparing);
      QVERIFY(!view.resultScreen()->actionButton("Compare")->isEnabled());
      QVERIFY(finished.wait(20000));
      QVERIFY(!view.state().isComparing);
      QVERIFY2(view.state().showComparison,
               qPrintable(view.state().errorMessage.value_or(QString())));
      ComparisonSheet* sheet = view.comparisonSheet();
      QVERIFY(sheet);
      const QStringList texts = sheet->texts();
      for (const QString& text : comparison.texts) QVERIFY2(texts.contains(text), qPrintable(text));
      for (const char* card : {"pixelCard", "fingerprintCard", "textCard"}) {
        QCOMPARE(sheet->card(card) != nullptr, comparison.cards.contains(card));
      }
      QCOMPARE(texts.filter(QRegularExpression(QStringLiteral("^Line \\d+$"))).size(),
               comparison.entries);
      // Return is "Done"; the comparison stays until the next one.
      sheet->show();
      QTest::keyClick(sheet, Qt::Key_Return);
      QTRY_VERIFY(!view.comparisonSheet());
      QVERIFY(!view.state().showComparison && view.state().comparison);
    }
    QCOMPARE(dialogs.requests.back().title, QStringLiteral("Compare With Another File"));
    QCOMPARE(dialogs.requests.back().prompt, QStringLiteral("Compare"));
    QCOMPARE(dialogs.requests.back().mode, FileRequest::Mode::openFile);

    // A second file that is gone: the message, no sheet.
    dialogs.answer = folder / "gone.txt";
    view.resultScreen()->actionButton("Compare")->click();
    QVERIFY(finished.wait(20000));
    QVERIFY(!view.comparisonSheet() && !view.state().showComparison);
    QCOMPARE(view.state().errorMessage.value_or(QString()),
             QStringLiteral("Lumenscribe could not compare these files: gone.txt: No such file "
                            "or directory"));
  }

  void cleanCopyIsOfferedForOnePictureInAWritableFormat() {
    const std::vector<std::pair<std::filesystem::path, bool>> cases{
        {fixture("photo_gps.jpg"), true},         {testData("image/photo.tif"), true},
        {testData("image/animated.gif"), false},  // more than one picture
        {testData("pdf/square_page.pdf"), false}, {fixture("notes.txt"), false},
    };
    ContentView view;
    for (const auto& [item, offered] : cases) {
      QVERIFY(inspectAndWait(view, item));
      QCOMPARE(!view.resultScreen()->actionButton("Create Clean Copy")->isHidden(), offered);
    }
  }

  void aPixelSafeCopyIsCheckedAndCanBeInspected() {
    QTemporaryDir temporary;
    const std::filesystem::path copy =
        std::filesystem::path(temporary.path().toStdString()) / "photo_gps-clean.jpg";
    ContentView view;
    ScriptedChooser dialogs;
    dialogs.answer = copy;
    view.setFileChooser(dialogs.chooser());
    QVERIFY(inspectAndWait(view, fixture("photo_gps.jpg")));
    QSignalSpy finished(&view, &ContentView::actionFinished);
    view.resultScreen()->actionButton("Create Clean Copy")->click();
    QVERIFY(view.state().isMakingCleanCopy);
    QVERIFY(finished.wait(20000));
    QVERIFY(!view.state().isMakingCleanCopy);
    QCOMPARE(dialogs.requests.back().title, QStringLiteral("Create Clean Copy"));
    QCOMPARE(dialogs.requests.back().prompt, QStringLiteral("Save Clean Copy"));
    QCOMPARE(dialogs.requests.back().proposedName, QStringLiteral("photo_gps-clean.jpg"));
    QCOMPARE(dialogs.requests.back().mimeTypes, QStringList{"image/jpeg"});
    CleanCopySheet* sheet = view.cleanCopySheet();
    QVERIFY2(sheet, qPrintable(view.state().errorMessage.value_or(QString())));
    QVERIFY(sheet->findings().contains(
        QStringLiteral("The copy decodes to exactly the same pixels as the original.")));
    QVERIFY(sheet->findings().contains(
        QStringLiteral("No camera, location, creator or software details are left.")));

    QSignalSpy inspected(&view, &ContentView::inspectionFinished);
    sheet->inspectButton()->click();
    QVERIFY(inspected.wait(20000));
    QCOMPARE(view.state().result->url, copy);
    QCOMPARE(view.resultScreen()->sectionCard(QStringLiteral("Location")), nullptr);
    QTRY_VERIFY(!view.cleanCopySheet());
  }

  void aRefusedPixelSafeCopyAsksBeforeAStandardOne() {
    QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    ContentView view;
    ScriptedChooser dialogs;
    dialogs.answer = folder / "photo-clean.tif";
    view.setFileChooser(dialogs.chooser());
    QVERIFY(inspectAndWait(view, testData("image/photo.tif")));
    QSignalSpy finished(&view, &ContentView::actionFinished);

    const auto ask = [&]() -> QMessageBox* {
      view.resultScreen()->actionButton("Create Clean Copy")->click();
      if (!finished.wait(20000)) return nullptr;
      return view.cleanCopyQuestion();
    };
    QMessageBox* question = ask();
    QVERIFY2(question, qPrintable(view.state().errorMessage.value_or(QString())));
    QVERIFY(view.state().showCleanCopyFallback);
    QCOMPARE(view.state().pendingCleanCopySource, testData("image/photo.tif"));
    QCOMPARE(view.state().pendingCleanCopyDestination, folder / "photo-clean.tif");
    QCOMPARE(question->text(), QStringLiteral("Pixel-safe copy unavailable"));
    QCOMPARE(question->informativeText(),
             QStringLiteral("Lumenscribe could not make a pixel-safe copy for this image. A "
                            "standard clean copy will still remove the metadata, but JPEG or "
                            "HEIC files may be re-encoded."));
    QStringList answers;
    for (const QAbstractButton* button : question->buttons()) answers << button->text();
    answers.sort();
    QCOMPARE(answers, (QStringList{"Cancel", "Make Standard Clean Copy"}));

    const auto answer = [](QMessageBox* box, const QString& text) {
      for (QAbstractButton* button : box->buttons()) {
        if (button->text() == text) button->click();
      }
    };
    answer(question, QStringLiteral("Cancel"));
    QVERIFY(!view.state().showCleanCopyFallback);
    QVERIFY(!view.state().pendingCleanCopySource && !view.state().pendingCleanCopyDestination);
    QCOMPARE(namesIn(folder), QStringList{});

    // Asked again; this time the standard copy is made, checked and kept.
    question = ask();
    QVERIFY(question);
    answer(question, QStringLiteral("Make Standard Clean Copy"));
    QVERIFY(!view.state().pendingCleanCopySource && view.state().isMakingCleanCopy);
    QVERIFY(finished.wait(20000));
    QVERIFY2(view.cleanCopySheet(), qPrintable(view.state().errorMessage.value_or(QString())));
    QCOMPARE(namesIn(folder), QStringList{"photo-clean.tif"});
  }

  void theFileDialogAsksAsRequestedAndAnswersOnce() {
    QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    QWidget window;
    FileRequest request;
    request.mode = FileRequest::Mode::saveFile;
    request.title = QStringLiteral("Save Lumenscribe Report");
    request.prompt = QStringLiteral("Save Report");
    request.folder = folder;
    request.proposedName = QStringLiteral("notes-Lumenscribe-Report.txt");
    request.mimeTypes = {QStringLiteral("text/plain")};
    std::vector<std::optional<std::filesystem::path>> answers;
    const auto ask = [&] {
      chooseWithFileDialog(request, &window, [&](std::optional<std::filesystem::path> chosen) {
        answers.push_back(std::move(chosen));
      });
      return window.findChild<QFileDialog*>();
    };

    QFileDialog* dialog = ask();
    QVERIFY(dialog);
    QCOMPARE(dialog->windowTitle(), request.title);
    QCOMPARE(dialog->labelText(QFileDialog::Accept), request.prompt);
    QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
    QCOMPARE(dialog->selectedFiles(),
             QStringList{temporary.filePath(QStringLiteral("notes-Lumenscribe-Report.txt"))});
    static_cast<QDialog*>(dialog)->accept();  // as the confirm button does
    QTRY_VERIFY(!window.findChild<QFileDialog*>());
    QCOMPARE(answers.size(), std::size_t{1});
    QCOMPARE(answers.back(), folder / "notes-Lumenscribe-Report.txt");

    request.mode = FileRequest::Mode::openFile;
    dialog = ask();
    QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFile);
    dialog->reject();
    QTRY_VERIFY(!window.findChild<QFileDialog*>());
    QCOMPARE(answers.size(), std::size_t{2});
    QVERIFY(!answers.back());
  }

  void closingTheWindowWhileActionsRunLeavesCleanly() {
    QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    auto view = std::make_unique<ContentView>();
    ScriptedChooser dialogs;
    view->setFileChooser(dialogs.chooser());
    QVERIFY(inspectAndWait(*view, fixture("photo_gps.jpg")));
    dialogs.answer = folder / "report.txt";
    view->resultScreen()->actionButton("Save Report")->click();
    dialogs.answer = fixture("rotated.jpg");
    view->resultScreen()->actionButton("Compare")->click();
    view->resultScreen()->actionButton("Create Clean Copy")->click();
    view.reset();  // nothing may call back into the window
    QThreadPool::globalInstance()->waitForDone();
    QTest::qWait(50);
    // The report was under way: it is finished whole.
    QVERIFY(readFile(folder / "report.txt").find("LUMENSCRIBE INSPECTION REPORT") == 0);
  }
};

QTEST_MAIN(ActionsTest)
#include "actions_test.moc"

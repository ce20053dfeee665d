// The real boxes and the real save dialog, answered by a timer that looks at them.
#include "support/WindowTest.h"

namespace {

class RealDialogs : public WindowTest {
protected:
    /// Does `look` with each modal dialog that comes up, until `work` is over. `look` closes it.
    static void While(const std::function<void()>& work, const std::function<void(QDialog&)>& look)
    {
        QObject until;
        int looks = 0;
        const std::function<void()> lookAgain = [&] {
            QTimer::singleShot(10, &until, lookAgain); // at first, since a look may open a dialog and stay in it
            auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog != nullptr) ++looks < 50 ? look(*dialog) : dialog->reject(); // it takes no answer
        };
        lookAgain();
        work();
    }

    /// Types a name, presses Return, and answers the question whether to replace it. After a no the user cancels.
    std::optional<path> SaveAs(const std::string& typed, QMessageBox::StandardButton answer = QMessageBox::Yes)
    {
        std::optional<platform::SaveChoice> chosen;
        While([&] { chosen = real->ShowModal(asked); },
              [&](QDialog& dialog) {
                  if (auto* const question = qobject_cast<QMessageBox*>(&dialog)) {
                      replaced = question->text().toStdString();
                      EXPECT_EQ(question->defaultButton(), question->button(QMessageBox::No));
                      question->button(answer)->click();
                  } else if (answer == QMessageBox::No && !replaced.empty()) {
                      dialog.reject();
                  } else {
                      auto& name = *dialog.findChild<QLineEdit*>("fileNameEdit");
                      name.setText(QString::fromStdString(typed));
                      QTest::keyClick(&name, Qt::Key_Return);
                  }
              });
        if (!chosen) return std::nullopt;
        agreed = chosen->Existing == files::Existing::Replace;
        return chosen->File;
    }

    const std::unique_ptr<platform::Dialogs> real = platform::MakeDialogs();
    platform::SaveAsDialog asked{.InitialDirectory = folder,
                                 .PromptText = "Save <b> Sound File",
                                 .SuggestedFileName = "SOUND",
                                 .Title = "Title Property",
                                 .Filter = "Untitled (*.bin)"};
    std::string replaced;
    bool agreed = false; // that a file is replaced
};

TEST_F(RealDialogs, SaveDialogShowsWhatItIsAskedFor)
{
    std::string seen;
    const auto look = [&](QDialog& dialog) {
        auto& files = dynamic_cast<QFileDialog&>(dialog);
        seen = (files.windowTitle() + "|" + files.directory().path() + "|" + files.nameFilters().join(",") + "|" +
                dialog.findChild<QLineEdit*>("fileNameEdit")->text() + "|")
                   .toStdString();
        for (const auto* const each : dialog.findChildren<QLabel*>())
            if (each->text() == "Save <b> Sound File" && each->textFormat() == Qt::PlainText && each->isVisible() &&
                each->mapTo(&dialog, QPoint()).y() < 20)
                seen += "prompt above";
        files.reject();
    };
    While([&] { EXPECT_FALSE(real->ShowModal(asked)); }, look);
    EXPECT_EQ(seen, "Title Property|" + folder.string() + "|Untitled (*.bin)|SOUND|prompt above");
}

TEST_F(RealDialogs, WhatIsTypedIsWhatIsWritten)
{
    std::filesystem::create_directory(folder / "other");
    const auto other = (folder / "other").string();
    for (const auto& [typed, chosen] : std::initializer_list<std::pair<std::string, path>>{
             {"SOUND", folder / "SOUND"},
             {" a b.bin ", folder / " a b.bin "},
             {"\xC3\xBC<b>&.bin", folder / "\xC3\xBC<b>&.bin"},
             {other + "/x", folder / "other" / "x"},
             {"12\" mix.bin", folder / "12\" mix.bin"}, // the toolkit reads a list of names there
             {"\"a\" \"b\"", folder / "\"a\" \"b\""},
             {other + "/12\".bin", folder / "other" / "12\".bin"},
         })
        EXPECT_EQ(SaveAs(typed), chosen);
    EXPECT_EQ(replaced, "");
    EXPECT_FALSE(agreed);
    for (const auto* const name : {"old.bin", "12\".bin"}) { // both ways ask before a file is replaced
        Write(name, "old");
        replaced.clear();
        EXPECT_EQ(SaveAs(name, QMessageBox::No), std::nullopt);
        EXPECT_EQ(SaveAs(name), folder / name);
        EXPECT_TRUE(std::exchange(agreed, false));
        EXPECT_EQ(replaced, "Die Datei " + std::string(name) + " existiert bereits.\nSoll sie überschrieben werden?");
    }
}

TEST_F(RealDialogs, SaveDialogIsTheToolkitsOwnWideEnoughAndMovesNoFile)
{
    const auto look = [&](QDialog& dialog) {
        EXPECT_TRUE(dynamic_cast<QFileDialog&>(dialog).testOption(QFileDialog::DontUseNativeDialog));
        const auto& list = *dialog.findChild<QTreeView*>("treeView");
        EXPECT_GE(list.viewport()->width(), list.header()->length());
        for (const auto* const view : dialog.findChildren<QAbstractItemView*>())
            EXPECT_FALSE(view->dragEnabled() || view->viewport()->acceptDrops()) << view->objectName().toStdString();
        dialog.reject();
    };
    const auto font = QApplication::font();
    QApplication::setFont(QFont("DejaVu Sans", 12));
    While([&] { EXPECT_EQ(real->ShowModal(asked), std::nullopt); }, look);
    QApplication::setFont(font);
}

TEST_F(RealDialogs, NameThatIsTooLongIsToldAndTypedAgain)
{
    std::string u;
    for (int i = 0; i < 128; ++i)
        u += "\xC3\xBC"; // 256 bytes
    bool told = false;
    std::optional<platform::SaveChoice> chosen;
    While([&] { chosen = real->ShowModal(asked); },
          [&](QDialog& dialog) {
              if (const auto* const box = qobject_cast<QMessageBox*>(&dialog)) {
                  told = box->text().endsWith(": File name too long");
                  return dialog.accept();
              }
              auto& name = *dialog.findChild<QLineEdit*>("fileNameEdit");
              name.setText(told ? "SOUND" : QString::fromStdString(u));
              QTest::keyClick(&name, Qt::Key_Return);
          });
    EXPECT_TRUE(told);
    EXPECT_EQ(chosen->File, folder / "SOUND");
}

TEST_F(RealDialogs, NamesAreShownOnOneLineOfTheScreen)
{
    EXPECT_EQ(platform::ShownName("a<b>.wav"), "a<b>.wav");
    EXPECT_EQ(platform::ShownName("a\nb\x7F\xC2\x85\xE2\x80\xAE"), "a\xE2\x90\x8A"
                                                                   "b\xE2\x90\xA1\xEF\xBF\xBD\xEF\xBF\xBD");
    const auto shown = platform::ShownName("first" + std::string(100000, 'x') + "last");
    EXPECT_THAT(shown, testing::StartsWith("firstxx"));
    EXPECT_THAT(shown, testing::EndsWith("xxlast"));
    While([&] { real->MsgBox(shown + ": no file\n" + std::string(30, 'm')); },
          [&](QDialog& dialog) {
              EXPECT_EQ(dynamic_cast<QMessageBox&>(dialog).text().toStdString().find("\xE2\x80\x8B"),
                        std::string::npos);
              const auto& label = *dialog.findChild<QLabel*>("qt_msgbox_label");
              EXPECT_GE(label.width(), label.fontMetrics().horizontalAdvance(QString(30, 'm'))); // it grows
              EXPECT_LE(dialog.width(), dialog.screen()->size().width());
              EXPECT_LE(dialog.height(), dialog.screen()->size().height());
              dialog.accept();
          });
}

TEST_F(RealDialogs, YieldLetsTheToolkitWorkButTakesNoUserInput)
{
    struct Moves : QObject {
        int seen = 0;
        bool eventFilter(QObject* /*watched*/, QEvent* event) override
        {
            if (event->type() == QEvent::MouseMove) ++seen;
            return false;
        }
    } moves;
    ShowPrompts();
    main->windowHandle()->installEventFilter(&moves);
    bool worked = false;
    QTimer::singleShot(0, main, [&] { worked = true; });
    QCursor::setPos(main->mapToGlobal(QPoint(100, 100))); // waits in the desktop's queue, as keys and clicks do
    real->RuntimeBackgroundTask();
    EXPECT_TRUE(worked);
    EXPECT_EQ(moves.seen, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return moves.seen > 0; }));
}

TEST_F(RealDialogs, BoxShowsItsTextLetterForLetter)
{
    std::string seen;
    While([&] { real->MsgBox("<b>&x\n\ny"); },
          [&](QDialog& dialog) {
              const auto& box = dynamic_cast<QMessageBox&>(dialog);
              EXPECT_EQ(box.textFormat(), Qt::PlainText);
              EXPECT_EQ(dialog.parentWidget(), main);
              seen = (box.windowTitle() + "|" + box.text()).toStdString();
              dialog.accept();
          });
    EXPECT_EQ(seen, "Tonfloss|<b>&x\n\ny");
    const std::string line = "words that the toolkit would break up, although there is room for them";
    While([&] { real->MsgBox(line); },
          [&](QDialog& dialog) {
              const auto& label = *dialog.findChild<QLabel*>("qt_msgbox_label");
              EXPECT_LT(label.height(), 2 * label.fontMetrics().height());
              dialog.accept();
          });
}

class HeldDown : public RealDialogs, public testing::WithParamInterface<Qt::Key> {};
INSTANTIATE_TEST_SUITE_P(Keys, HeldDown, testing::Values(Qt::Key_Return, Qt::Key_Enter));

TEST_P(HeldDown, AnswersNothing)
{
    ShowPrompts();
    QKeyEvent repeated(QEvent::KeyPress, GetParam(), Qt::NoModifier, "\r", true);
    QKeyEvent released(QEvent::KeyRelease, GetParam(), Qt::NoModifier, "\r");
    QKeyEvent unmarked(QEvent::KeyPress, GetParam(), Qt::NoModifier, "\r"); // so come many, in the same millisecond
    released.setTimestamp(1600);
    unmarked.setTimestamp(1600);
    for (auto* const event : {&repeated, &released, &unmarked})
        QApplication::sendEvent(&Find<QLineEdit>("TextFieldAudioAdresse"), event);
    EXPECT_TRUE(dialogs.shown.empty());
    int looks = 0;
    const auto hold = [&](QDialog& dialog) {
        if (++looks > 3) return dialog.reject();
        for (auto* const event : {&repeated, &released, &unmarked})
            if (auto* const focus = dialog.focusWidget()) QApplication::sendEvent(focus, event);
    };
    While([&] { real->MsgBox("stands"); }, hold);
    EXPECT_EQ(std::exchange(looks, 0), 4);
    While([&] { EXPECT_FALSE(real->ShowModal(asked)); }, hold);
    EXPECT_EQ(looks, 4);
}

} // namespace

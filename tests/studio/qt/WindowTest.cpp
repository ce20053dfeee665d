// The studio's window where somebody meets it: keys, handles, fields, drops. Off screen, with SDL's device that is
// none.
#include "studio/qt/Window.h"
#include "support/KnownFile.h"
#include "support/SoundFiles.h"

#include <QtTest>
#include <QtWidgets>

#include <gtest/gtest.h>

namespace {

using namespace studio;

class StudioWindow : public testing::Test {
protected:
    ~StudioWindow() override { std::filesystem::remove_all(folder); }

    template <class Control>
    Control& Named(const char* name)
    {
        for (auto* const control : window.findChildren<Control*>())
            if (control->accessibleName() == name) return *control;
        throw std::runtime_error(std::string("nothing is called ") + name);
    }

    bool Until(const std::function<bool(const State&)>& holds)
    {
        return QTest::qWaitFor([&] { return holds(window.Now()); }, 30000);
    }

    /// Ten seconds, of which 2 to 4 are chosen.
    void OpenTone()
    {
        window.resize(1100, 720);
        window.show();
        window.Open(WriteTone(folder / "tone.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, {.seconds = 10}));
        ASSERT_TRUE(Until([](const State& state) { return state.file && state.file->isRead && state.part.to == 10; }));
        Type("From", "2");
        Type("To", "0:04,0");
        ASSERT_EQ(window.Now().part, (Span{.from = 2, .to = 4}));
    }

    void Type(const char* field, const char* time)
    {
        auto& edit = Named<QLineEdit>(field);
        edit.selectAll();
        QTest::keyClicks(&edit, time);
        QTest::keyClick(&edit, Qt::Key_Return);
    }

    /// Where a moment stands in the waveform of the whole file.
    [[nodiscard]] static QPoint At(const QWidget& wave, double second)
    {
        return {static_cast<int>(second / 10 * wave.width()), wave.height() / 3};
    }

    const std::filesystem::path folder = NewFolder();
    Window window{Language::English, folder};
};

TEST_F(StudioWindow, KeysMoveThePart)
{
    OpenTone();
    auto& wave = Named<QWidget>("Waveform");
    const struct {
        std::vector<std::pair<Qt::Key, Qt::KeyboardModifiers>> keys;
        Span part; // from 2 to 4; a step is a fiftieth of the ten seconds that are shown, a fine one a thousandth
        const char* reason;
    } rows[] = {
        {{{Qt::Key_Right, Qt::NoModifier}}, {2.2, 4.2}, "an arrow moves the whole"},
        {{{Qt::Key_Left, Qt::ControlModifier}}, {1.99, 3.99}, "in fine steps with Ctrl"},
        {{{Qt::Key_Right, Qt::ShiftModifier}}, {2, 4.2}, "the end alone with Shift"},
        {{{Qt::Key_Up, Qt::NoModifier}, {Qt::Key_Left, Qt::ShiftModifier}}, {1.8, 4}, "or the start"},
        {{{Qt::Key_Down, Qt::NoModifier}, {Qt::Key_End, Qt::ShiftModifier}}, {2, 10}, "up to the end of the file"},
        {{{Qt::Key_Home, Qt::NoModifier}}, {0, 2}, "no further than its beginning"},
        {{{Qt::Key_End, Qt::NoModifier}}, {8, 10}, "no further than its end"},
    };
    for (const auto& row : rows) {
        for (const auto& [key, modifiers] : row.keys)
            QTest::keyClick(&wave, key, modifiers);
        EXPECT_DOUBLE_EQ(window.Now().part.from, row.part.from) << row.reason;
        EXPECT_DOUBLE_EQ(window.Now().part.to, row.part.to) << row.reason;
        Named<QPushButton>("Undo").click();
        EXPECT_EQ(window.Now().part, (Span{.from = 2, .to = 4})) << row.reason;
    }
}

TEST_F(StudioWindow, MouseMovesHandlesAndWhole)
{
    OpenTone();
    auto& wave = Named<QWidget>("Waveform");
    const struct {
        double from, to; // seconds at which the mouse goes down and up
        Span part;
        const char* reason;
    } rows[] = {
        {2, 1, {1, 4}, "the handle at the start"}, {4, 7, {2, 7}, "the handle at the end"},
        {3, 5, {4, 6}, "the part as a whole"},     {3, 9.9, {8, 10}, "which stays in the file"},
        {6, 8, {2, 4}, "beside it nothing"},
    };
    for (const auto& row : rows) {
        QTest::mousePress(&wave, Qt::LeftButton, {}, At(wave, row.from));
        QTest::mouseMove(&wave, At(wave, (row.from + row.to) / 2));
        QTest::mouseMove(&wave, At(wave, row.to));
        QTest::mouseRelease(&wave, Qt::LeftButton, {}, At(wave, row.to));
        constexpr double kPixels = 0.03; // seconds
        EXPECT_NEAR(window.Now().part.from, row.part.from, kPixels) << row.reason;
        EXPECT_NEAR(window.Now().part.to, row.part.to, kPixels) << row.reason;
        if (window.Now().part != Span{.from = 2, .to = 4}) Named<QPushButton>("Undo").click(); // a drag is one change
        ASSERT_EQ(window.Now().part, (Span{.from = 2, .to = 4})) << row.reason;
    }
}

TEST_F(StudioWindow, WrongTimeStaysInItsFieldAndChangesNothing)
{
    OpenTone();
    for (const auto* const wrong : {"4", "soon", "1:75"}) {
        Type("From", wrong);
        EXPECT_EQ(window.Now().part, (Span{.from = 2, .to = 4})) << wrong;
        EXPECT_EQ(Named<QLineEdit>("From").text(), wrong);
    }
    Type("From", "3");
    EXPECT_EQ(window.Now().part, (Span{.from = 3, .to = 4}));
    EXPECT_EQ(Named<QLineEdit>("From").text(), "0:03.000");
}

TEST_F(StudioWindow, DropOpensTheFileAndIsNeverAMove)
{
    window.show();
    const auto drop = [&](const char* name, Qt::DropActions possible) {
        const auto file = WriteTone(folder / name, SF_FORMAT_WAV | SF_FORMAT_PCM_16, {});
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file))});
        QDragEnterEvent enter({50, 50}, possible, &data, Qt::LeftButton, {});
        QDropEvent dropped({50, 50}, possible, &data, Qt::LeftButton, {});
        enter.ignore();
        QApplication::sendEvent(&window, &enter);
        if (!enter.isAccepted()) return Qt::IgnoreAction;
        QApplication::sendEvent(&window, &dropped);
        return dropped.dropAction();
    };
    EXPECT_EQ(drop("moved.wav", Qt::MoveAction), Qt::IgnoreAction);
    EXPECT_EQ(drop("first.wav", Qt::CopyAction | Qt::MoveAction), Qt::CopyAction);
    EXPECT_EQ(drop("second.wav", Qt::LinkAction | Qt::MoveAction), Qt::LinkAction); // the newest counts
    EXPECT_TRUE(Until([](const State& state) { return state.file && state.file->isRead; }));
    EXPECT_EQ(window.Now().file->name, "second.wav");
}

TEST_F(StudioWindow, SpaceAndNumbersPlayAndKeepThePlace)
{
    OpenTone();
    ASSERT_TRUE(Until([](const State& state) { return state.isCurrent; }));
    auto& wave = Named<QWidget>("Waveform");
    const auto isOn = [&](const char* name) {
        return QTest::qWaitFor([&] {
            for (auto* const button : window.findChildren<QPushButton*>())
                if (button->accessibleName() == name) return true;
            return false;
        });
    };
    QTest::keyClick(&wave, Qt::Key_Space);
    EXPECT_TRUE(isOn("Stop Machine"));
    Named<QPushButton>("Play Part").click();
    EXPECT_TRUE(isOn("Stop Part"));
    EXPECT_TRUE(isOn("Play Machine"));
    QTest::keyClick(&wave, Qt::Key_Space);
    EXPECT_TRUE(isOn("Play Part"));
    QTest::mouseClick(&wave, Qt::LeftButton, {}, At(wave, 3));
    EXPECT_EQ(Named<QLabel>("Place").text(), "0:03.0");
}

TEST_F(StudioWindow, EveryControlHasANameForWhoDoesNotSeeIt)
{
    for (const auto language : {Language::English, Language::German}) {
        const Window each(language, folder);
        for (const auto* const control : each.findChildren<QWidget*>()) {
            // The list of a combo box is the toolkit's, and a text is its own name.
            const bool isOthers = control->inherits("QAbstractItemView") || control->inherits("QLabel");
            if (control->focusPolicy() == Qt::NoFocus || isOthers) continue;
            EXPECT_FALSE(control->accessibleName().isEmpty()) << control->metaObject()->className();
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

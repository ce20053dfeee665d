// Window.h: the studio's window. It shows what studio::Studio knows, and tells it what was done.
#pragma once

#include "core/MessagePair.h"
#include "serial/Ports.h"
#include "studio/Studio.h"
#include "studio/Words.h"
#include "studio/qt/Listening.h"
#include "studio/qt/PictureView.h"

#include <QMainWindow>
#include <QTimer>

#include <array>
#include <vector>

class QFrame;
class QLabel;
class QPushButton;
class QScrollArea;
class QScrollBar;
class QSlider;
class QToolButton;

namespace studio {

class Panel;
class SpectrogramView;
class WaveView;

class Window : public QMainWindow {
public:
    explicit Window(Language language, const std::filesystem::path& temporary);
    ~Window() override;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    void Open(const std::filesystem::path& file);
    /// Of what nobody expected.
    void Tell(const QString& text);

    [[nodiscard]] const State& Now() const { return studio_.Now(); }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct NoticeRow {
        QFrame* frame;
        QLabel* symbol;
        QLabel* text;
    };

    QWidget* MakeTop();
    QWidget* MakeNotices();
    QWidget* MakePictures();
    QWidget* MakeTransport();
    QLayout* MakeZoom();
    QPushButton* MakePlay(Heard heard);
    QToolButton* MakeTool(const MessagePair& text, const MessagePair& description, const QString& symbol,
                          std::function<void()> action);
    void MakeShortcuts();

    void Refresh();
    void RefreshTop();
    void RefreshNotices();
    void RefreshPictures();
    void RefreshListening();
    void ShowZoom();
    void Tick();

    void AskToOpen();
    void AskToSave(Output output);
    void AskToSend();
    /// Looks for serial ports in a thread.
    void LookForPorts();
    void PlayOrStop(Heard heard);
    void Seek(double second);
    void ZoomBy(double factor);
    void ShowPart();
    void ShowAll();
    void ShowKeys();

    [[nodiscard]] QString Say(const MessagePair& pair) const;

    Language language_;
    Listening listening_;
    Timeline timeline_;
    QTimer tick_; // while something plays or goes on
    double place_ = 0;
    std::filesystem::path opened_; // what the zoom belongs to

    QLabel* name_ = nullptr;
    std::array<NoticeRow, 3> notices_{};
    QFrame* unexpected_ = nullptr;
    QLabel* unexpectedText_ = nullptr;
    QLabel* hint_ = nullptr;
    WaveView* wave_ = nullptr;
    std::array<SpectrogramView*, 2> spectrograms_{};
    QScrollBar* scroll_ = nullptr;
    std::array<QPushButton*, 2> play_{};
    QToolButton* repeat_ = nullptr;
    QLabel* time_ = nullptr;
    QSlider* volume_ = nullptr;
    QLabel* device_ = nullptr;
    Panel* panel_ = nullptr;
    QScrollArea* side_ = nullptr;
    std::vector<serial::Port> ports_;

    Studio studio_; // last: it is gone before what its wake calls
};

} // namespace studio

#include "platform/Controls.h"

#include "platform/qt/WindowImpl.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace platform {
namespace {

/// `font`, or the largest smaller size of it in which `text` fits into `box`, down to 8 pixels: a box has a fixed size,
/// whatever the desktop's font.
QFont FittedFont(QFont font, const QString& text, QSize box)
{
    constexpr int kSmallest = 8; // pixels; below that nobody can read it
    for (int pixels = QFontInfo(font).pixelSize();; font.setPixelSize(pixels)) {
        const auto size = QFontMetrics(font).size(Qt::TextExpandTabs, text);
        const double scale = std::min(1.0 * box.width() / size.width(), 1.0 * box.height() / size.height());
        if (scale >= 1 || pixels <= kSmallest) return font;
        pixels = std::max(kSmallest, std::min(pixels - 1, static_cast<int>(pixels * scale))); // each try loads a font
    }
}

} // namespace

struct Control::Impl {
    explicit Impl(QWidget* made) : widget(*made) {}

    QWidget& widget; // owned by the window's widget
    int fontPixels = 0;

    template <class Widget>
    [[nodiscard]] Widget& As() const
    {
        return static_cast<Widget&>(widget);
    }

    /// Gives the widget its font, so that `text` fits into `box`.
    void Fit(const QString& text, QSize box) const
    {
        auto font = QApplication::font(&widget);
        if (fontPixels > 0) font.setPixelSize(fontPixels);
        widget.setFont(FittedFont(font, text, box));
    }
};

namespace {

class FieldWidget : public QLineEdit {
public:
    explicit FieldWidget(EventGate& gate) : gate_(gate) {}

    std::function<bool(std::u32string_view)> keyDown;

private:
    // Paste is left to the menu, which looks for a file on the clipboard first.
    bool event(QEvent* event) override
    {
        const bool paste =
            event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Paste);
        return !paste && QLineEdit::event(event);
    }

    // The selection stays while the menu bar has the focus, so that its items can work on it.
    void focusOutEvent(QFocusEvent* event) override
    {
        QFocusEvent kept(QEvent::FocusOut, Qt::PopupFocusReason);
        QLineEdit::focusOutEvent(event->reason() == Qt::MenuBarFocusReason ? &kept : event);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        bool consumed = true;
        gate_.Run([&] { consumed = keyDown && keyDown(TextOf(*event)); });
        if (!consumed) QLineEdit::keyPressEvent(event);
    }

    // By the key, never by its text: Return and Enter both come as 13, and so does Ctrl+M; Ctrl+C comes as 3.
    static std::u32string TextOf(const QKeyEvent& event)
    {
        if (event.key() == Qt::Key_Return) return U"\x0D";
        if (event.key() == Qt::Key_Enter) return U"\x03";
        const auto text = event.text().toStdU32String();
        return text == U"\x0D" || text == U"\x03" ? U"" : text;
    }

    EventGate& gate_;
};

class AreaWidget : public QPlainTextEdit {
public:
    AreaWidget() { HideSelection(); }

private:
    void changeEvent(QEvent* event) override
    {
        if (event->type() == QEvent::PaletteChange) HideSelection();
        QPlainTextEdit::changeEvent(event);
    }

    // While the focus is elsewhere. The palette that is set here changes nothing when this comes again for it.
    void HideSelection()
    {
        QPalette hidden;
        hidden.setBrush(QPalette::Inactive, QPalette::Highlight, palette().base());
        hidden.setBrush(QPalette::Inactive, QPalette::HighlightedText, palette().text());
        setPalette(hidden);
    }
};

class RadioWidget : public QRadioButton {
public:
    explicit RadioWidget(EventGate& gate) : gate_(gate) {}

    std::function<void()> action;

private:
    // The toolkit's style draws the ring of a button that isn't chosen darker than the window, which a dark window
    // hides.
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QStyleOptionButton option;
        initStyleOption(&option);
        auto& colours = option.palette;
        if (colours.window().color().lightness() < 128) colours.setBrush(QPalette::Window, colours.windowText());
        QStylePainter(this).drawControl(QStyle::CE_RadioButton, option);
    }

    // Reached by every way of choosing the button, before anything has changed.
    void nextCheckState() override
    {
        if (isChecked()) return;
        gate_.Run([this] {
            QRadioButton::nextCheckState();
            if (action) action();
        });
    }

    EventGate& gate_;
};

class CanvasWidget : public QWidget {
public:
    explicit CanvasWidget(QString backdrop) : backdrop_(std::move(backdrop)) {}

private:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        const int scale = std::clamp(qCeil(devicePixelRatio()), 1, kLargestScale);
        if (scale != scale_) picture_.load(QString(":/%1@%2x.png").arg(backdrop_).arg(scale));
        scale_ = scale;
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(rect(), picture_);
    }

    static constexpr int kLargestScale = 4; // of the pictures among the resources

    QString backdrop_;
    QPixmap picture_; // the smallest one with a pixel for each of the screen's
    int scale_ = 0;
};

/// Puts a control on `below`, whose corner stands at `origin` in the window.
void Place(QWidget& widget, const ControlRow& row, QWidget& below, QPoint origin)
{
    widget.setParent(&below);
    widget.setObjectName(QString::fromUtf8(row.name));
    widget.setGeometry({QPoint(row.left, row.top) - origin, QSize(row.width, row.height)});
    widget.setVisible(row.visible);
    widget.setAccessibleName(QString::fromUtf8(row.spoken));
}

} // namespace

Control::Control(Window& parent, const ControlRow& row, std::unique_ptr<Impl> impl) : impl_(std::move(impl))
{
    impl_->fontPixels = row.fontPixels;
    Place(impl_->widget, row, *parent.impl_->centralWidget(), {});
}

Control::Control(Control& parent, const ControlRow& row, std::unique_ptr<Impl> impl) : impl_(std::move(impl))
{
    Place(impl_->widget, row, parent.impl_->widget, parent.impl_->widget.pos());
}

Control::~Control() = default;

bool Control::Visible() const
{
    return !impl_->widget.isHidden();
}

void Control::SetVisible(bool visible)
{
    impl_->widget.setVisible(visible);
}

void Control::SetFocus()
{
    impl_->widget.setFocus();
}

Label::Label(Window& parent, const ControlRow& row) : Control(parent, row, std::make_unique<Impl>(new QLabel))
{
    auto& label = impl().As<QLabel>();
    label.setTextFormat(Qt::PlainText);
    if (row.align == Align::Centre) label.setAlignment(Qt::AlignCenter);
    SetText(row.text);
}

void Label::SetText(std::string_view utf8)
{
    text_ = utf8;
    const auto lines = QString::fromUtf8(utf8).replace("\r\n", "\n").replace('\r', '\n');
    auto& label = impl().As<QLabel>();
    impl().Fit(lines, label.size());
    label.setText(lines);
    if (described_ != nullptr) described_->impl().widget.setAccessibleDescription(lines);
}

void Label::SpeakAsNameOf(Control& control)
{
    impl().As<QLabel>().setBuddy(&control.impl().widget);
}

void Label::SpeakAsDescriptionOf(Control& control)
{
    described_ = &control;
    SetText(text_);
}

void Label::SetTextColor(std::uint32_t rgb)
{
    textColor_ = rgb;
    QPalette palette;
    if (rgb != 0) palette.setColor(QPalette::WindowText, QColor::fromRgb(rgb));
    impl().widget.setPalette(palette);
}

TextArea::TextArea(Window& parent, const ControlRow& row) : Control(parent, row, std::make_unique<Impl>(new AreaWidget))
{
    auto& area = impl().As<AreaWidget>();
    area.setReadOnly(true);
    area.setLineWrapMode(QPlainTextEdit::NoWrap);
    area.setAcceptDrops(false); // a dragged file is for the window
}

void TextArea::SetText(std::string text)
{
    text_ = std::move(text);
    impl().As<AreaWidget>().setPlainText(QString::fromUtf8(text_));
}

TextField::TextField(Window& parent, const ControlRow& row)
    : Control(parent, row, std::make_unique<Impl>(new FieldWidget(parent.Gate())))
{
    impl().widget.setAcceptDrops(false); // a dragged file is for the window
}

std::u32string TextField::Text() const
{
    return impl().As<FieldWidget>().text().toStdU32String();
}

void TextField::SetText(std::u32string_view text)
{
    impl().As<FieldWidget>().setText(QString::fromStdU32String(std::u32string(text)));
}

void TextField::SetKeyDown(std::function<bool(std::u32string_view key)> keyDown)
{
    impl().As<FieldWidget>().keyDown = std::move(keyDown);
}

RadioButton::RadioButton(Window& parent, const ControlRow& row)
    : Control(parent, row, std::make_unique<Impl>(new RadioWidget(parent.Gate())))
{
    auto& button = impl().As<RadioWidget>();
    const auto caption = QString::fromUtf8(row.text);
    button.setText(caption);
    QStyleOptionButton option;
    option.initFrom(&button);
    const auto box = button.style()->subElementRect(QStyle::SE_RadioButtonContents, &option, &button);
    impl().Fit(caption, box.size());
    // All captions in one size: the smallest that one of them needs.
    const auto buttons = button.parentWidget()->findChildren<QRadioButton*>();
    const auto smallest =
        std::ranges::min(buttons, {}, [](auto* each) { return each->fontInfo().pixelSize(); })->font();
    for (auto* const each : buttons)
        each->setFont(smallest);
}

bool RadioButton::Value() const
{
    return impl().As<RadioWidget>().isChecked();
}

void RadioButton::SetValue(bool value)
{
    impl().As<RadioWidget>().setChecked(value);
}

void RadioButton::SetAction(std::function<void()> action)
{
    impl().As<RadioWidget>().action = std::move(action);
}

Canvas::Canvas(Control& parent, const ControlRow& row, std::string_view backdrop)
    : Control(parent, row, std::make_unique<Impl>(new CanvasWidget(QString::fromUtf8(backdrop))))
{}

} // namespace platform

// Controls.h: the window's controls, each made from its row of a table. Texts are UTF-8 and shown letter for letter.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

class Window;

enum class Align { Default, Centre };

struct ControlRow {
    std::string_view name;
    int left, top, width, height; // in the window's units, from its upper left corner below the menu bar
    int fontPixels;               // 0 is the desktop's own size
    Align align;
    bool visible;
    std::string_view text;
    std::string_view spoken = {}; // what a screen reader calls a control that has neither a text nor a label
};

/// A text that is too large for its control's box is shown in a smaller size.
class Control {
public:
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    /// True also while the window itself isn't shown.
    [[nodiscard]] bool Visible() const;
    void SetVisible(bool visible);
    void SetFocus();

protected:
    struct Impl;
    Control(Window& parent, const ControlRow& row, std::unique_ptr<Impl> impl);
    Control(Control& parent, const ControlRow& row, std::unique_ptr<Impl> impl);
    ~Control();
    friend class Label;

    [[nodiscard]] Impl& impl() const { return *impl_; }

private:
    std::unique_ptr<Impl> impl_;
};

class Label : public Control {
public:
    Label(Window& parent, const ControlRow& row);

    [[nodiscard]] const std::string& Text() const { return text_; }
    void SetText(std::string_view utf8);

    /// 0xRRGGBB. 0 is shown as the desktop's own text colour, so that it can be read on a dark ground.
    [[nodiscard]] std::uint32_t TextColor() const { return textColor_; }
    void SetTextColor(std::uint32_t rgb);

    /// Screen readers call `control` by this label's text, or read it out as its description. It follows the text.
    void SpeakAsNameOf(Control& control);
    void SpeakAsDescriptionOf(Control& control);

private:
    std::string text_;
    std::uint32_t textColor_ = 0;
    Control* described_ = nullptr;
};

/// Read-only, several lines.
class TextArea : public Control {
public:
    TextArea(Window& parent, const ControlRow& row);

    /// The text as it was set, whatever line ends it has.
    [[nodiscard]] const std::string& Text() const { return text_; }
    void SetText(std::string text);

private:
    std::string text_;
};

class TextField : public Control {
public:
    TextField(Window& parent, const ControlRow& row);

    [[nodiscard]] std::u32string Text() const;
    void SetText(std::u32string_view text);

    /// Called with the text of each key before the field takes it: character 13 for Return, 3 for Enter on the keypad.
    /// A result of true keeps the key from the field.
    void SetKeyDown(std::function<bool(std::u32string_view key)> keyDown);
};

/// The radio buttons of a window exclude each other.
class RadioButton : public Control {
public:
    RadioButton(Window& parent, const ControlRow& row);

    [[nodiscard]] bool Value() const;
    /// Runs no action. Taking the value from the chosen button has no effect: another one must be chosen.
    void SetValue(bool value);

    /// Called when the user has chosen this button, and not when it was the chosen one already.
    void SetAction(std::function<void()> action);
};

/// Shows a picture at any scale.
class Canvas : public Control {
public:
    /// `backdrop` is the name of a picture among the program's resources. `parent` lies below the canvas, but the row
    /// still counts from the window's corner.
    Canvas(Control& parent, const ControlRow& row, std::string_view backdrop);
};

} // namespace platform

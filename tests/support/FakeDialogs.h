// FakeDialogs.h: answers at once, and keeps all that was shown.
#pragma once

#include "platform/Dialogs.h"

#include <functional>
#include <string>
#include <vector>

class FakeDialogs : public platform::Dialogs {
public:
    std::vector<std::string> shown;
    std::optional<std::filesystem::path> answer; // none: the user cancels
    platform::SaveAsDialog asked;
    std::function<void()> whileOpen = [] {}; // what happens while a box or dialog stands
    std::function<void()> onYield = [] {};

    void MsgBox(std::string_view utf8) override
    {
        shown.emplace_back(utf8);
        whileOpen();
    }

    /// The user agrees that a file is replaced.
    std::optional<platform::SaveChoice> ShowModal(const platform::SaveAsDialog& dialog) override
    {
        asked = dialog;
        whileOpen();
        if (!answer) return std::nullopt;
        const bool stands = std::filesystem::exists(*answer);
        return platform::SaveChoice{*answer, stands ? files::Existing::Replace : files::Existing::Refuse};
    }

    void RuntimeBackgroundTask() override { onYield(); }
};

// The program on a machine so slow that a user can do things in the middle of a conversion: a yield takes seconds.
#include "App.h"
#include "Application.h"

#include <chrono>
#include <thread>

namespace {

class SlowDialogs : public platform::Dialogs {
public:
    void MsgBox(std::string_view utf8) override { dialogs_->MsgBox(utf8); }
    std::optional<std::filesystem::path> ShowModal(const platform::SaveAsDialog& dialog) override
    {
        return dialogs_->ShowModal(dialog);
    }
    void RuntimeBackgroundTask() override
    {
        for (int i = 0; i < 100; ++i) {
            dialogs_->RuntimeBackgroundTask();
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
        }
    }

private:
    std::unique_ptr<platform::Dialogs> dialogs_ = platform::MakeDialogs();
};

} // namespace

int main(int argc, char** argv)
{
    platform::Application application(argc, argv);
    SlowDialogs dialogs;
    platform::EventGate gate(dialogs);
    MainMenuBar menuBar(gate);
    Window1 window(gate, menuBar, dialogs);
    App().Event_Open(window, menuBar);
    window.Show();
    return application.Run();
}

#pragma once

#include "app/engine_set_up.h"
#include "config/record_file.h"
#include "engine/coil_check.h"
#include "engine/wiring.h"
#include "form/frequency_source.h"
#include "platform/hardware.h"

#include <array>
#include <functional>

namespace app {

/// The set-up assistant. Each page shows what the program has now; Next does what the user would do in the
/// main window, Skip, Back and Cancel leave what the page found. Whatever a page has started ends with the
/// page.
class Assistant {
  public:
    Assistant(form::Form1& main, form::FrmAssistant& dialog, engine::Motion& motion,
              engine::OutputPorts& outputs, config::RecordFile& file, platform::Hardware& hardware);

    void Form_Load();
    void cmdNext_Click();
    void cmdSkip_Click();
    void cmdBack_Click();
    /// Ends what is running, if anything is; else closes the assistant.
    void cmdExitAssistant_Click();
    /// Stops both engines and a test.
    void halt();

    /// The frequency program in use; null: none.
    std::function<const form::FrequencySource*()> source;

  private:
    using Page = form::FrmAssistant::Page;
    struct Engine {
        Engine(Assistant& assistant, form::AssistantEngine& shown, const engine::Side& side);
        form::AssistantEngine& shown;
        const engine::Side& side;
        EngineSetUp setUp;
        int trembles = 0;
    };

    void attachPages();
    void attachEngine(Engine& engine);
    void show(int page);
    void open(Page page);
    /// False, and told, if the page cannot be left.
    bool store(Page page);
    void restore();
    void look();
    void lookAtSource();
    void storeFunction();
    bool storeEngines(std::string (EngineSetUp::*storeOne)());
    bool storeSaving();
    void testCoils(Engine& engine, int rounds, int milliseconds);
    void showCoil(int coil);
    void turned(Engine& engine, engine::Turned turned);
    bool isRotor() const { return main_.intFunzione == form::kSatelliteRotor; }
    int memory() const { return dialog_.cmbMemory.ListIndex + 1; }

    form::Form1& main_;
    form::FrmAssistant& dialog_;
    engine::Motion& motion_;
    config::RecordFile& file_;
    platform::Hardware& hardware_;
    engine::Sides sides_;
    engine::CoilCheck coils_;
    Engine a_, b_;
    Engine* tested_ = nullptr;
    int page_ = 0;
    bool boardFound_ = false; // the USB board was on when the page opened
};

} // namespace app

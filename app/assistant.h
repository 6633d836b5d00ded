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
    /// Stops both engines and a test. False if nothing ran.
    bool halt();

    /// The frequency program in use; null: none.
    std::function<const form::FrequencySource*()> source;
    /// Called when the assistant moves an engine: no memory is in use any more.
    std::function<void(const engine::Side&)> onMove;
    /// The number of changes that can be undone.
    std::function<std::size_t()> changes;

  private:
    using Page = form::FrmAssistant::Page;
    struct Engine {
        Engine(Assistant& assistant, form::AssistantEngine& shown, const engine::Side& side);
        form::AssistantEngine& shown;
        const engine::Side& side;
        EngineSetUp setUp;
        bool hasTurned = false; // and the user has not yet told which way
        int trembles = 0;
    };

    void attachPages();
    void attachEngine(Engine& engine);
    void show(int page);
    void open(Page page);
    /// False, and told, if the page cannot be left.
    bool store(Page page);
    void restore();
    void cancel();
    void look();
    void lookAtSource();
    bool storeFunction();
    bool storeEngines(std::string (EngineSetUp::*storeOne)());
    bool storeSaving();
    void testCoils(Engine& engine, int rounds, int milliseconds);
    void showCoil(int coil);
    void chooseOutputs();
    void turned(Engine& engine, engine::Turned turned);
    static void advise(form::AssistantEngine& shown, const std::string& advice,
                       std::optional<engine::WireSwap> swap = {});
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
    int rounds_ = 0; // of the test
    int page_ = 0;
    // As the page found it.
    bool boardFound_ = false; // the USB board is on
    bool linkFound_ = false;  // the frequency program is connected
    std::size_t changesFound_ = 0;
};

} // namespace app

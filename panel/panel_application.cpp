#include "panel/panel_application.h"

#include "model/mod_Producttypes.h"

namespace kalde2 {

PanelApplication::PanelApplication(const Platform& platform)
    : window_(platform),
      frames_(&window_),
      progress_(&window_, platform.clock),
      painter_(window_.Form()),
      refresh_(*window_.Form().tmr_updatelstCommands),
      link_(platform.port, platform.clock, unit_.values, painter_, refresh_),
      queue_(link_),
      gate_(*window_.Form().fra_control, queue_),
      command_list_(unit_.catalogue, unit_.value_names, unit_.connectivity, unit_.values,
                    unit_.resolutions),
      connectivity_reader_(unit_.connectivity, link_, platform.clock, progress_, refresh_),
      direct_(window_.Form(), link_, unit_.values, refresh_, queue_, platform.boxes),
      editor_(window_.Form(), command_list_, link_, unit_.values, refresh_, queue_),
      connection_(window_.Form(), platform.port, link_, refresh_, progress_, platform.boxes,
                  OpenSteps()),
      clone_(unit_.catalogue, unit_.connectivity, unit_.values, link_, progress_),
      settings_file_(unit_.catalogue, unit_.connectivity, unit_.values, link_, platform.boxes,
                     platform.dialogs),
      resolution_data_(unit_.resolutions, link_, platform.clock, progress_, platform.boxes),
      autoset_(link_, platform.clock, progress_) {
  painter_.SetQueue(&queue_);
  QObject::connect(&progress_, &frm_Progress::SleepFollows, &frames_, &FrameLimiter::PaintNow);
  window_.Attach({link_, unit_, queue_, direct_, editor_, connection_, clone_, settings_file_,
                  resolution_data_, autoset_, refresh_});
}

PanelApplication::~PanelApplication() {
  window_.Form_Terminate();
}

UnitConnection::Steps PanelApplication::OpenSteps() {
  return {
      .load_product_catalogue =
          [this](std::int32_t type) {
            LoadProductCatalogue(unit_.catalogue, connectivity_reader_, type);
          },
      .load_value_names =
          [this](std::int32_t type) {
            LoadValueNames(unit_.value_names, type, unit_.input_names, unit_.connectivity);
          },
      .refresh_command_list = [this] { editor_.RefreshCommandList(); },
      .fill_source_combos = [this] { direct_.FillSourceCombos(unit_.value_names); },
  };
}

}  // namespace kalde2

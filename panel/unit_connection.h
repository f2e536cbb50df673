#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "model/mod_Producttypes.h"
#include "model/progress_view.h"
#include "panel/unit_services.h"
#include "panel/vornik_form.h"

namespace kalde2 {

/// Opening and closing of the port, and the detection of the unit behind it.
///
/// The operator may close the port at any moment, also in the midst of an opening: what runs then
/// finds the port closed and ends without another word.
class UnitConnection {
 public:
  /// The steps that follow a detection, in this order. A fault in one skips the rest of that step.
  struct Steps {
    std::function<void(std::int32_t product_type)> load_product_catalogue;
    std::function<void(std::int32_t product_type)> load_value_names;
    std::function<void()> refresh_command_list;
    std::function<void()> fill_source_combos;
  };

  UnitConnection(VornikForm& form, SerialPort& port, CommandLink& link, RefreshTimer& refresh,
                 ProgressView& progress, MessageBoxes& boxes, Steps steps);

  /// Opens the port that the form names, reads the product type, and on a supported product
  /// enables what it offers and fills the tables. Otherwise tells the operator why not and leaves
  /// the panel closed.
  void Open();

  /// Closes the port and the panel.
  void Close();

  /// Closes the port and says so on the form, without touching the panel's controls: the program
  /// ends.
  void ShutPort();

  /// True once the unit has answered and is supported.
  [[nodiscard]] bool UnitConnected() const { return unit_connected_; }

  /// The product type of the last successful detection.
  [[nodiscard]] std::int32_t ProductType() const { return product_type_; }

 private:
  [[nodiscard]] std::string OpenPort();
  void ShowPortOpen();
  void EnterOpenState(const Product& product);
  void OfferControls(const Product& product);
  void LoadTables();
  void EnterClosedState();
  void ReportFailure(bool answered);

  VornikForm& form_;
  SerialPort& port_;
  CommandLink& link_;
  RefreshTimer& refresh_;
  ProgressView& progress_;
  MessageBoxes& boxes_;
  Steps steps_;
  bool unit_connected_ = false;
  std::int32_t product_type_ = 0;
};

}  // namespace kalde2

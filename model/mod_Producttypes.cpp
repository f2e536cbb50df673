#include "model/mod_Producttypes.h"

#include <algorithm>
#include <array>
#include <span>

namespace kalde2 {
namespace {

// ---------------------------------------------------------------------------------------------
// What distinguishes the products: each is a set of these, and a parameter belongs to one of them.

// clang-format off
enum Feature : Features {
  kAlways      = 0,        // every product
  kLock        = 1u << 0,
  kOutStd      = 1u << 1,
  kBackColour  = 1u << 2,
  kSchPhase    = 1u << 3,  // "Sch Phase"
  kCcirPhase   = 1u << 4,  // the same parameter as "CCIR Sch Phase"
  kOutType     = 1u << 5,
  kFade        = 1u << 6,
  kSmoothFirst = 1u << 7,  // "Smoothing" ahead of "Flip"
  kSmoothing   = 1u << 8,  // "Smoothing" behind "Aspect Change"
  kFlicker     = 1u << 9,
  kBothZoom    = 1u << 10, // one zoom for both axes, beside "Zoom H" and "Zoom V"
  kAxisZoom    = 1u << 11, // "H Zoom" and "V Zoom" alone
  kMaxFade     = 1u << 12,
  kKeyer       = 1u << 13,
  kEdgeBlend   = 1u << 14,
  kTermination = 1u << 15,
  kShiftsFirst = 1u << 16, // per-source parameters in the order of `kShiftsFirstOrder`
};

constexpr Features kSmall = kBothZoom | kShiftsFirst;
constexpr Features kLarge = kFlicker | kAxisZoom | kSmoothing | kMaxFade;
constexpr Features kLockBack = kLock | kBackColour;
constexpr Features kAnalogue = kOutStd | kCcirPhase;

// Entry sets that several products share.
constexpr Features kSmallPlain   = kSmall | kFlicker | kSmoothing | kOutStd | kSchPhase | kFade |
                                   kTermination;
constexpr Features kSmallKeyer   = kSmallPlain | kLockBack | kKeyer;
constexpr Features kSmallDigital = kSmall | kOutType | kSmoothFirst;
constexpr Features kDigital      = kLarge | kOutType;
constexpr Features kDigitalKeyer = kDigital | kLockBack | kKeyer;
constexpr Features kDigitalBlend = kDigitalKeyer | kEdgeBlend;
constexpr Features kAnalogueOnly = kLarge | kAnalogue | kTermination;
constexpr Features kAnalogueLock = kAnalogueOnly | kLockBack | kOutType;
constexpr Features kFull         = kDigitalBlend | kAnalogue;
constexpr Features kFullAnalogue = kFull | kTermination;

// ---------------------------------------------------------------------------------------------
// The inputs of products that have always the same: items for the lists of lock sources and of main
// inputs. An empty list is left as it is.

using Item = std::string_view;
constexpr Item kRgb[]      = {"RGB1,&H10"};
constexpr Item kVideo[]    = {"CV1,&H30", "YC1,&H40"};
constexpr Item kRgbVideo[] = {"RGB1,&H10", "CV1,&H30", "YC1,&H40"};

//                                   lock source  main input
constexpr FixedInputs kRgbInput      = {{},       kRgb};
constexpr FixedInputs kRgbOnVideo    = {kVideo,   kRgb};
constexpr FixedInputs kAllInputs     = {{},       kRgbVideo};
constexpr FixedInputs kAllOnRgb      = {kRgb,     kRgbVideo};
constexpr const FixedInputs* kFitted = nullptr;  // as read from the unit

// ---------------------------------------------------------------------------------------------
// The products. A new one is a row here and, to be let in, an entry in the gate.

constexpr Family kNoFamily = Family::kNone;
constexpr Family kCompact = Family::kCompact;
constexpr Family k5000 = Family::k5000;
constexpr Family k6000 = Family::k6000;

constexpr auto kProducts = std::to_array<Product>({
    // model code    flag A  flag B  autoset  inputs        family     parameters
    {22, "9R-K2-310", false,  false,  false,   &kRgbInput,   kCompact,  kSmallPlain},
    {23, "9R-K2-315", true,   false,  true,    &kRgbOnVideo, kCompact,  kSmallKeyer},
    {24, "9R-K2-320", false,  true,   false,   &kAllInputs,  kCompact,  kDigital},
    {25, "9R-K2-325", true,   true,   true,    &kAllOnRgb,   kCompact,  kDigitalKeyer},
    {71, "9R-K2-340", false,  false,  true,    &kRgbInput,   kCompact,  kSmallDigital},
    {57, "K2-416",    true,   false,  true,    &kRgbOnVideo, kCompact,  kSmallKeyer},
    {58, "K2-426",    true,   true,   true,    &kAllOnRgb,   kCompact,  kDigitalBlend},
    {26, "K2-5100",   false,  false,  false,   kFitted,      k5000,     kAnalogueOnly},
    {27, "K2-5150",   true,   false,  true,    kFitted,      k5000,     kFullAnalogue},
    {28, "K2-5200",   false,  true,   false,   kFitted,      k5000,     kDigital},
    {29, "K2-5250",   true,   true,   true,    kFitted,      k5000,     kDigitalBlend},
    {30, "K2-5350",   true,   true,   true,    kFitted,      k5000,     kFull},
    {68, "",          false,  false,  false,   kFitted,      k5000,     kDigitalKeyer},  // no model; intended
    {31, "K2-6100",   false,  false,  false,   kFitted,      k6000,     kAnalogueOnly},
    {32, "K2-6150",   true,   false,  true,    kFitted,      k6000,     kFullAnalogue},
    {59, "K2-6150",   true,   false,  true,    kFitted,      k6000,     kAnalogueLock},
    {60, "K2-6155",   true,   false,  true,    kFitted,      kNoFamily, kAlways},  // no parameters; intended
    {33, "K2-6200",   false,  true,   false,   kFitted,      k6000,     kDigital},
    {61, "K2-6205",   true,   true,   true,    kFitted,      k6000,     kDigital},
    {34, "K2-6250",   true,   true,   true,    kFitted,      k6000,     kDigitalBlend},
    {62, "K2-6255",   true,   true,   true,    kFitted,      k6000,     kDigitalBlend},
    {35, "K2-6350",   true,   true,   true,    kFitted,      k6000,     kFull},
    {63, "K2-6355",   true,   true,   true,    kFitted,      k6000,     kFull},
});

// The gate of detection, in its order. It is a list of its own beside the table: 34 stands in it
// twice, and 62 not at all although the table has its row. Both are intended.
constexpr std::int32_t kSupportedTypes[] = {22, 23, 24, 25, 71, 57, 58, 26, 27, 28, 29,
                                            30, 31, 59, 32, 60, 33, 34, 34, 61, 35, 63};

static_assert(std::ranges::all_of(kSupportedTypes, [](std::int32_t type) {
  const auto* const product = std::ranges::find(kProducts, type, &Product::type);
  return product != kProducts.end() && !product->model_code.empty();
}));

// ---------------------------------------------------------------------------------------------
// The parameters of all products in the order of the command list.

struct Parameter {
  Address address;
  std::string_view name;
  std::int16_t minimum;
  std::int16_t maximum;
  std::int32_t list;  // number of the value list, 0 for a number
  bool item_data;
  Feature feature;
};

constexpr Parameter kUnitParameters[] = {
    // address name               min   max   list item data  offered with
    {130, "Main input",             0,    0,    7,   true,      kAlways},
    {131, "Resolution",             1,    1024, 0,   false,     kAlways},
    {266, "Lock mode",              0,    0,    6,   false,     kLock},
    {329, "Lock source",            0,    0,    5,   true,      kLock},
    {257, "Out std",                0,    0,    1,   false,     kOutStd},
    {315, "Back Y",                 16,   235,  0,   false,     kBackColour},
    {316, "Back U",                 16,   240,  0,   false,     kBackColour},
    {317, "Back V",                 16,   240,  0,   false,     kBackColour},
    {133, "Sch Phase",              -180, 180,  0,   false,     kSchPhase},
    {133, "CCIR Sch Phase",         -180, 180,  0,   false,     kCcirPhase},
    {226, "Out type",               0,    0,    19,  false,     kOutType},
    {403, "Fade",                   0,    0,    16,  true,      kFade},
    {398, "Shrink Enable",          0,    0,    9,   false,     kAlways},
    {161, "Smoothing",              0,    0,    10,  false,     kSmoothFirst},
    {146, "Flicker Reduction",      0,    0,    11,  false,     kFlicker},
    {149, "Flip",                   0,    0,    12,  false,     kAlways},
    {156, "Freeze",                 0,    0,    9,   false,     kAlways},
    {134, "Zoom",                   100,  1000, 0,   false,     kBothZoom},
    {259, "Zoom H",                 100,  1000, 0,   false,     kBothZoom},
    {261, "Zoom V",                 100,  1000, 0,   false,     kBothZoom},
    {259, "H Zoom",                 100,  1000, 0,   false,     kAxisZoom},
    {261, "V Zoom",                 100,  1000, 0,   false,     kAxisZoom},
    {159, "Zoom Pan H",             0,    100,  0,   false,     kAlways},
    {160, "Zoom Pan V",             0,    100,  0,   false,     kAlways},
    {135, "Shrink",                 10,   1000, 0,   false,     kBothZoom},
    {260, "Shrink H",               10,   100,  0,   false,     kBothZoom},
    {262, "Shrink V",               10,   100,  0,   false,     kBothZoom},
    {260, "H Shrink",               10,   100,  0,   false,     kAxisZoom},
    {262, "V Shrink",               10,   100,  0,   false,     kAxisZoom},
    {218, "Shrink Posn H",          0,    100,  0,   false,     kAlways},
    {219, "Shrink Posn V",          0,    100,  0,   false,     kAlways},
    {258, "Aspect adjust",          0,    0,    13,  false,     kAlways},
    {400, "Aspect Change",          0,    0,    17,  false,     kAlways},
    {161, "Smoothing",              0,    0,    10,  false,     kSmoothing},
    {173, "H Out Shift",            0,    120,  0,   false,     kAlways},
    {174, "V Out Shift",            0,    120,  0,   false,     kAlways},
    {271, "Max fade level",         0,    100,  0,   false,     kMaxFade},
    {295, "Key Enable",             0,    0,    9,   false,     kKeyer},
    {324, "Swap Fore / Background", 0,    0,    9,   false,     kKeyer},
    {175, "Key Y min",              0,    255,  0,   false,     kKeyer},
    {176, "Key U min",              0,    255,  0,   false,     kKeyer},
    {177, "Key V min",              0,    255,  0,   false,     kKeyer},
    {178, "Key Y max",              0,    255,  0,   false,     kKeyer},
    {179, "Key U max",              0,    255,  0,   false,     kKeyer},
    {180, "Key V max",              0,    255,  0,   false,     kKeyer},
    {289, "Y Softness",             0,    255,  0,   false,     kKeyer},
    {290, "Y Invert",               0,    0,    9,   false,     kKeyer},
    {291, "U Softness",             0,    255,  0,   false,     kKeyer},
    {292, "U Invert",               0,    0,    9,   false,     kKeyer},
    {293, "V Softness",             0,    255,  0,   false,     kKeyer},
    {294, "V Invert",               0,    0,    9,   false,     kKeyer},
    {384, "Edge Blend",             0,    0,    3,   false,     kEdgeBlend},
    {399, "Blend Guides",           0,    0,    8,   false,     kEdgeBlend},
    {392, "Blend H Gamma",          1,    15,   0,   false,     kEdgeBlend},
    {397, "Blend V Gamma",          1,    15,   0,   false,     kEdgeBlend},
    {395, "Blend H Size",           0,    512,  0,   false,     kEdgeBlend},
    {396, "Blend V Size",           0,    512,  0,   false,     kEdgeBlend},
    {408, "Comp Side",              0,    99,   0,   false,     kEdgeBlend},
    {413, "Comp Center",            0,    99,   0,   false,     kEdgeBlend},
    {278, "Setup Source",           0,    0,    20,  true,      kAlways},
};

// The input adjustments close the list. The upper limit of right and bottom shift is 100, that of
// left and top shift 120; both are the unit's own.
constexpr Parameter kInputParameters[] = {
    {222, "Right shift",            -120, 100,  0,   false,     kAlways},
    {223, "Bottom shift",           -120, 100,  0,   false,     kAlways},
    {182, "Left shift",             -120, 120,  0,   false,     kAlways},
    {183, "Top shift",              -120, 120,  0,   false,     kAlways},
    {163, "On source loss",         0,    0,    18,  false,     kAlways},
    {138, "Video Standard",         0,    0,    15,  false,     kAlways},
    {145, "Input Pixel Phase",      0,    31,   0,   false,     kAlways},
    {184, "De-interlace",           0,    0,    2,   false,     kAlways},
    {185, "Saturation",             0,    180,  0,   false,     kAlways},
    {186, "Hue",                    -90,  90,   0,   false,     kAlways},
    {187, "Brightness",             0,    180,  0,   false,     kAlways},
    {188, "Contrast",               0,    180,  0,   false,     kAlways},
    {193, "RGB Type",               0,    0,    14,  false,     kAlways},
    {197, "R Contrast",             75,   150,  0,   false,     kAlways},
    {198, "G Contrast",             75,   150,  0,   false,     kAlways},
    {199, "B Contrast",             75,   150,  0,   false,     kAlways},
    {409, "RGB Termination",        0,    0,    21,  false,     kTermination},
};

// The small products list the same input adjustments in this order, any other one behind them.
constexpr Address kShiftsFirstOrder[] = {182, 183, 222, 223, 163, 197, 198, 199,
                                              193, 184, 185, 186, 187, 188, 138, 145};
// clang-format on

/// Place of an input parameter in the small products' order.
std::ptrdiff_t ShiftsFirstPlace(const Parameter& parameter) {
  return std::ranges::find(kShiftsFirstOrder, parameter.address) -
         std::ranges::begin(kShiftsFirstOrder);
}

void AddOffered(ParamCatalogue& catalogue, std::span<const Parameter> rows, Features features) {
  for (const Parameter& row : rows) {
    if (row.feature != kAlways && (features & row.feature) == 0) continue;
    catalogue.AddParameter(row.address, row.name, row.list, row.minimum, row.maximum,
                           row.item_data);
  }
}

void AddEntries(ParamCatalogue& catalogue, Features features) {
  AddOffered(catalogue, kUnitParameters, features);
  auto inputs = std::to_array(kInputParameters);
  if ((features & kShiftsFirst) != 0) {
    std::ranges::stable_sort(inputs, {}, ShiftsFirstPlace);
  }
  AddOffered(catalogue, inputs, features);
}

void BuildFamily(ParamCatalogue& catalogue, Family family, std::int32_t type) {
  const Product* const product = FindProduct(type);
  if (product != nullptr && product->family == family) AddEntries(catalogue, product->features);
}

}  // namespace

const Product* FindProduct(std::int32_t type) {
  const auto* const row = std::ranges::find(kProducts, type, &Product::type);
  return row != kProducts.end() ? row : nullptr;
}

const Product* FindSupportedProduct(std::int32_t type) {
  const auto* const supported = std::ranges::find(kSupportedTypes, type);
  return supported != std::end(kSupportedTypes) ? FindProduct(type) : nullptr;
}

ValueRange RangeOf(Address address) {
  const auto* const row = std::ranges::find(kUnitParameters, address, &Parameter::address);
  if (row == std::end(kUnitParameters)) return {0, 0};
  return {row->minimum, row->maximum};
}

void BuildCompactCatalogue(ParamCatalogue& catalogue, std::int32_t type) {
  BuildFamily(catalogue, kCompact, type);
}

void Build5000Catalogue(ParamCatalogue& catalogue, std::int32_t type) {
  BuildFamily(catalogue, k5000, type);
}

void Build6000Catalogue(ParamCatalogue& catalogue, std::int32_t type) {
  BuildFamily(catalogue, k6000, type);
}

std::vector<std::string_view> ParameterNames() {
  std::vector<std::string_view> names;
  for (const std::span<const Parameter> rows : {std::span<const Parameter>(kUnitParameters),
                                                std::span<const Parameter>(kInputParameters)}) {
    for (const Parameter& row : rows) {
      if (std::ranges::count(names, row.name) == 0) names.push_back(row.name);
    }
  }
  return names;
}

void AddProductEntries(ParamCatalogue& catalogue, std::int32_t type) {
  catalogue.BeginBuild();
  BuildCompactCatalogue(catalogue, type);
  Build5000Catalogue(catalogue, type);
  Build6000Catalogue(catalogue, type);
}

TransferReport LoadProductCatalogue(ParamCatalogue& catalogue, ConnectivityReader& connectivity,
                                    std::int32_t type) {
  AddProductEntries(catalogue, type);
  return connectivity.ReadConnectivity(type);
}

}  // namespace kalde2

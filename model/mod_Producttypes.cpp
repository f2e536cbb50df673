#include "model/mod_Producttypes.h"

#include <algorithm>
#include <array>
#include <span>

namespace kalde2 {
namespace {

// ---------------------------------------------------------------------------------------------
// The model table and the gate. A new product type is a row here, an entry in the gate and a row in
// its family below.

// clang-format off
constexpr ProductModel kModels[] = {
    // type  model code     flag A  flag B
    {22, "9R-K2-310",       false,  false},
    {23, "9R-K2-315",       true,   false},
    {24, "9R-K2-320",       false,  true},
    {25, "9R-K2-325",       true,   true},
    {26, "K2-5100",         false,  false},
    {27, "K2-5150",         true,   false},
    {28, "K2-5200",         false,  true},
    {29, "K2-5250",         true,   true},
    {30, "K2-5350",         true,   true},
    {31, "K2-6100",         false,  false},
    {32, "K2-6150",         true,   false},
    {33, "K2-6200",         false,  true},
    {34, "K2-6250",         true,   true},
    {35, "K2-6350",         true,   true},
    {57, "K2-416",          true,   false},
    {58, "K2-426",          true,   true},
    {59, "K2-6150",         true,   false},
    {60, "K2-6155",         true,   false},
    {61, "K2-6205",         true,   true},
    {62, "K2-6255",         true,   true},
    {63, "K2-6355",         true,   true},
    {71, "9R-K2-340",       false,  false},
};

constexpr std::int32_t kSupportedTypes[] = {22, 23, 24, 25, 71, 57, 58, 26, 27, 28, 29,
                                            30, 31, 59, 32, 60, 33, 34, 34, 61, 35, 63};

// ---------------------------------------------------------------------------------------------
// What distinguishes the products: each is a set of these, and a parameter belongs to one of them.

using Features = std::uint32_t;
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
constexpr Features kSmallKeyer   = kSmall | kFlicker | kSmoothing | kOutStd | kSchPhase | kFade |
                                   kTermination | kLockBack | kKeyer;
constexpr Features kDigital      = kLarge | kOutType;
constexpr Features kDigitalKeyer = kDigital | kLockBack | kKeyer;
constexpr Features kDigitalBlend = kDigitalKeyer | kEdgeBlend;
constexpr Features kAnalogueOnly = kLarge | kAnalogue | kTermination;
constexpr Features kFull         = kDigitalBlend | kAnalogue;

struct Product {
  std::int32_t type;
  Features features;
};

constexpr Product kCompactProducts[] = {
    {57, kSmallKeyer},
    {58, kDigitalBlend},
    {22, kSmall | kFlicker | kSmoothing | kOutStd | kSchPhase | kFade | kTermination},
    {71, kSmall | kOutType | kSmoothFirst},
    {23, kSmallKeyer},
    {24, kDigital},
    {25, kDigitalKeyer},
};

constexpr Product k5000Products[] = {
    {26, kAnalogueOnly},
    {27, kFull | kTermination},
    {28, kDigital},
    {29, kDigitalBlend},
    {68, kDigitalKeyer},  // has entries but no row in the model table, so it is never detected
    {30, kFull},
};

constexpr Product k6000Products[] = {  // 60 has a model code but no entries; that is intended
    {31, kAnalogueOnly},
    {32, kFull | kTermination},
    {59, kLarge | kLockBack | kAnalogue | kOutType | kTermination},
    {33, kDigital},      {61, kDigital},
    {34, kDigitalBlend}, {62, kDigitalBlend},
    {35, kFull},         {63, kFull},
};

// ---------------------------------------------------------------------------------------------
// The parameters of all products in the order of the command list.

struct Parameter {
  std::int16_t address;
  std::string_view name;
  std::string_view minimum;
  std::string_view maximum;
  std::int32_t list;  // number of the value list, 0 for a number
  bool item_data;
  Feature feature;
};

constexpr Parameter kUnitParameters[] = {
    // address name                 min     max     list  item data  offered with
    {130, "Main input",             "0",    "0",    7,    true,      kAlways},
    {131, "Resolution",             "1",    "1024", 0,    false,     kAlways},
    {266, "Lock mode",              "0",    "0",    6,    false,     kLock},
    {329, "Lock source",            "0",    "0",    5,    true,      kLock},
    {257, "Out std",                "0",    "0",    1,    false,     kOutStd},
    {315, "Back Y",                 "16",   "235",  0,    false,     kBackColour},
    {316, "Back U",                 "16",   "240",  0,    false,     kBackColour},
    {317, "Back V",                 "16",   "240",  0,    false,     kBackColour},
    {133, "Sch Phase",              "-180", "180",  0,    false,     kSchPhase},
    {133, "CCIR Sch Phase",         "-180", "180",  0,    false,     kCcirPhase},
    {226, "Out type",               "0",    "0",    19,   false,     kOutType},
    {403, "Fade",                   "0",    "0",    16,   true,      kFade},
    {398, "Shrink Enable",          "0",    "0",    9,    false,     kAlways},
    {161, "Smoothing",              "0",    "0",    10,   false,     kSmoothFirst},
    {146, "Flicker Reduction",      "0",    "0",    11,   false,     kFlicker},
    {149, "Flip",                   "0",    "0",    12,   false,     kAlways},
    {156, "Freeze",                 "0",    "0",    9,    false,     kAlways},
    {134, "Zoom",                   "100",  "1000", 0,    false,     kBothZoom},
    {259, "Zoom H",                 "100",  "1000", 0,    false,     kBothZoom},
    {261, "Zoom V",                 "100",  "1000", 0,    false,     kBothZoom},
    {259, "H Zoom",                 "100",  "1000", 0,    false,     kAxisZoom},
    {261, "V Zoom",                 "100",  "1000", 0,    false,     kAxisZoom},
    {159, "Zoom Pan H",             "0",    "100",  0,    false,     kAlways},
    {160, "Zoom Pan V",             "0",    "100",  0,    false,     kAlways},
    {135, "Shrink",                 "10",   "1000", 0,    false,     kBothZoom},
    {260, "Shrink H",               "10",   "100",  0,    false,     kBothZoom},
    {262, "Shrink V",               "10",   "100",  0,    false,     kBothZoom},
    {260, "H Shrink",               "10",   "100",  0,    false,     kAxisZoom},
    {262, "V Shrink",               "10",   "100",  0,    false,     kAxisZoom},
    {218, "Shrink Posn H",          "0",    "100",  0,    false,     kAlways},
    {219, "Shrink Posn V",          "0",    "100",  0,    false,     kAlways},
    {258, "Aspect adjust",          "0",    "0",    13,   false,     kAlways},
    {400, "Aspect Change",          "0",    "0",    17,   false,     kAlways},
    {161, "Smoothing",              "0",    "0",    10,   false,     kSmoothing},
    {173, "H Out Shift",            "0",    "120",  0,    false,     kAlways},
    {174, "V Out Shift",            "0",    "120",  0,    false,     kAlways},
    {271, "Max fade level",         "0",    "100",  0,    false,     kMaxFade},
    {295, "Key Enable",             "0",    "0",    9,    false,     kKeyer},
    {324, "Swap Fore / Background", "0",    "0",    9,    false,     kKeyer},
    {175, "Key Y min",              "0",    "255",  0,    false,     kKeyer},
    {176, "Key U min",              "0",    "255",  0,    false,     kKeyer},
    {177, "Key V min",              "0",    "255",  0,    false,     kKeyer},
    {178, "Key Y max",              "0",    "255",  0,    false,     kKeyer},
    {179, "Key U max",              "0",    "255",  0,    false,     kKeyer},
    {180, "Key V max",              "0",    "255",  0,    false,     kKeyer},
    {289, "Y Softness",             "0",    "255",  0,    false,     kKeyer},
    {290, "Y Invert",               "0",    "0",    9,    false,     kKeyer},
    {291, "U Softness",             "0",    "255",  0,    false,     kKeyer},
    {292, "U Invert",               "0",    "0",    9,    false,     kKeyer},
    {293, "V Softness",             "0",    "255",  0,    false,     kKeyer},
    {294, "V Invert",               "0",    "0",    9,    false,     kKeyer},
    {384, "Edge Blend",             "0",    "0",    3,    false,     kEdgeBlend},
    {399, "Blend Guides",           "0",    "0",    8,    false,     kEdgeBlend},
    {392, "Blend H Gamma",          "1",    "15",   0,    false,     kEdgeBlend},
    {397, "Blend V Gamma",          "1",    "15",   0,    false,     kEdgeBlend},
    {395, "Blend H Size",           "0",    "512",  0,    false,     kEdgeBlend},
    {396, "Blend V Size",           "0",    "512",  0,    false,     kEdgeBlend},
    {408, "Comp Side",              "0",    "99",   0,    false,     kEdgeBlend},
    {413, "Comp Center",            "0",    "99",   0,    false,     kEdgeBlend},
    {278, "Setup Source",           "0",    "0",    20,   true,      kAlways},
};

// The input adjustments close the list. The upper limit of right and bottom shift is 100, that of
// left and top shift 120; both are the unit's own.
constexpr Parameter kInputParameters[] = {
    {222, "Right shift",            "-120", "100",  0,    false,     kAlways},
    {223, "Bottom shift",           "-120", "100",  0,    false,     kAlways},
    {182, "Left shift",             "-120", "120",  0,    false,     kAlways},
    {183, "Top shift",              "-120", "120",  0,    false,     kAlways},
    {163, "On source loss",         "0",    "0",    18,   false,     kAlways},
    {138, "Video Standard",         "0",    "0",    15,   false,     kAlways},
    {145, "Input Pixel Phase",      "0",    "31",   0,    false,     kAlways},
    {184, "De-interlace",           "0",    "0",    2,    false,     kAlways},
    {185, "Saturation",             "0",    "180",  0,    false,     kAlways},
    {186, "Hue",                    "-90",  "90",   0,    false,     kAlways},
    {187, "Brightness",             "0",    "180",  0,    false,     kAlways},
    {188, "Contrast",               "0",    "180",  0,    false,     kAlways},
    {193, "RGB Type",               "0",    "0",    14,   false,     kAlways},
    {197, "R Contrast",             "75",   "150",  0,    false,     kAlways},
    {198, "G Contrast",             "75",   "150",  0,    false,     kAlways},
    {199, "B Contrast",             "75",   "150",  0,    false,     kAlways},
    {409, "RGB Termination",        "0",    "0",    21,   false,     kTermination},
};

// The small products list the same input adjustments in this order, any other one behind them.
constexpr std::int16_t kShiftsFirstOrder[] = {182, 183, 222, 223, 163, 197, 198, 199,
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

void BuildFamily(ParamCatalogue& catalogue, std::span<const Product> family, std::int32_t type) {
  const auto product = std::ranges::find(family, type, &Product::type);
  if (product != family.end()) AddEntries(catalogue, product->features);
}

}  // namespace

const ProductModel* FindModel(std::int32_t type) {
  const auto* const row = std::ranges::find(kModels, type, &ProductModel::type);
  return row != std::end(kModels) ? row : nullptr;
}

bool IsSupportedProduct(std::int32_t type) {
  return std::ranges::find(kSupportedTypes, type) != std::end(kSupportedTypes);
}

void BuildCompactCatalogue(ParamCatalogue& catalogue, std::int32_t type) {
  BuildFamily(catalogue, kCompactProducts, type);
}

void Build5000Catalogue(ParamCatalogue& catalogue, std::int32_t type) {
  BuildFamily(catalogue, k5000Products, type);
}

void Build6000Catalogue(ParamCatalogue& catalogue, std::int32_t type) {
  BuildFamily(catalogue, k6000Products, type);
}

void AddProductEntries(ParamCatalogue& catalogue, std::int32_t type) {
  catalogue.BeginBuild();
  BuildCompactCatalogue(catalogue, type);
  Build5000Catalogue(catalogue, type);
  Build6000Catalogue(catalogue, type);
}

void LoadProductCatalogue(ParamCatalogue& catalogue, ConnectivityReader& connectivity,
                          std::int32_t type) {
  AddProductEntries(catalogue, type);
  connectivity.ReadConnectivity(type);
}

}  // namespace kalde2

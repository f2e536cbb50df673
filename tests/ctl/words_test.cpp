// What a user may write: commands, names, numbers and values.

#include <gtest/gtest.h>

#include "ctl/command_line.h"
#include "ctl/parameter_words.h"
#include "ctl/unit_access.h"
#include "model/mod_Producttypes.h"

namespace kalde2 {
namespace {

using Kind = Assignment::Kind;

/// What a call says instead of a result.
template <typename Call>
std::string Complaint(Call call) {
  try {
    (void)call();
  } catch (const CommandFault& fault) {
    EXPECT_EQ(fault.Status(), ExitStatus::kUsage);
    return fault.what();
  }
  return {};
}

/// The words of a unit of type 35 with two inputs.
struct Words {
  Words() {
    AddProductEntries(unit.catalogue, 35);
    LoadInputNames(unit.input_names);
    for (const auto& [source, name] : {std::pair{16, 0}, {48, 48}}) {
      const auto place = static_cast<std::size_t>(source);
      unit.connectivity.SourceFitted[place] = true;
      unit.connectivity.SourceInfo[place].NameIndex = static_cast<std::int16_t>(name);
    }
    LoadValueNames(unit.value_names, 35, unit.input_names, unit.connectivity);
  }

  [[nodiscard]] WantedValue Read(const std::string& text) const {
    const Assignment assignment = SplitAssignment(text);
    return ReadValue(words.Describe(words.Find(assignment.parameter)), assignment);
  }

  NullDisplay display;
  UnitModel unit{display, display};
  ParameterWords words{unit};
};

TEST(Words, AParameterGoesByNameBeginningOrAddress) {
  const Words known;
  const std::pair<const char*, int> cases[] = {
      {"Lock mode", 266}, {"lock mode", 266}, {" LOCK M", 266}, {"Hue", 186},
      {"h zoom", 259},    {"266", 266},       {"0x10A", 266},   {"Flip", 149},
  };
  for (const auto& [word, address] : cases) {
    EXPECT_EQ(AddressOf(known.words.Find(word)), address) << word;
  }
  const std::pair<const char*, const char*> wrong[] = {
      {"zoom", "parameter \"zoom\" may be Zoom Pan H or Zoom Pan V"},
      {"lock", "parameter \"lock\" may be Lock mode or Lock source"},
      {"Zoom Tan", "there is no parameter \"Zoom Tan\"; \"kalde2ctl list --all\" names them all"},
      {"134", "there is no parameter \"134\""},  // that product has none for both axes
      {"999999999999", "there is no parameter"},
      {"", "there is no parameter \"\""},
  };
  for (const auto& [word, right] : wrong) {
    const std::string said = Complaint([&, name = word] { return known.words.Find(name); });
    EXPECT_TRUE(said.starts_with(right)) << said;
  }
}

TEST(Words, AValueIsANumberAChoiceOrAStep) {
  const Words known;
  struct Case {
    const char* text;
    bool is_step;
    int number;
  };
  constexpr Case kCases[] = {
      {"h zoom=1000", false, 1000},
      {"h zoom=0x64", false, 100},
      {"h zoom=+5", true, 5},
      {"h zoom=-5", true, -5},
      {"h zoom-=5", true, -5},
      {"hue=-5", false, -5},  // it has negative values
      {"hue=+5", false, 5},
      {"hue+=5", true, 5},
      {"hue+=-5", true, -5},
      {"lock mode=lock", false, 1},  // the whole name before the beginning of another
      {"lock mode=LOCK+", false, 2},
      {"lock mode= 2", false, 2},
      {"rgb type=auto", false, 8},  // the unit's blank ahead of it does not count
      {"main input=cv 1", false, 48},
      {"main input=16", false, 16},
      {"resolution=1024 x 768 60hz", false, 27},
      {"resolution=0", false, 0},
      {"resolution=1023", false, 1023},
  };
  for (const auto& [text, is_step, number] : kCases) {
    const WantedValue value = known.Read(text);
    EXPECT_EQ(std::pair(value.is_step, value.number), std::pair(is_step, number)) << text;
  }
  const std::pair<const char*, const char*> wrong[] = {
      {"h zoom=99", "H Zoom takes 100 to 1000, not \"99\""},
      {"h zoom=1001", "H Zoom takes 100 to 1000, not \"1001\""},
      {"h zoom=1e2", "H Zoom takes 100 to 1000, not \"1e2\""},
      {"h zoom=", "H Zoom takes 100 to 1000, not \"\""},
      {"h zoom+=", "H Zoom takes 100 to 1000, not \"\""},
      {"hue=-91", "Hue takes -90 to 90, not \"-91\""},
      {"freeze=2", "Freeze takes Off, On, not \"2\""},
      {"freeze=+1", "Freeze takes Off, On, not \"+1\""},
      {"freeze+=1", "Freeze takes Off, On, not \"1\""},
      {"freeze=o", "Freeze \"o\" may be Off or On"},
      {"main input=17", "Main input takes RGB 1, CV 1, not \"17\""},
      {"resolution=1024", "Resolution takes 0 to 1023, or the name of a resolution, not \"1024\""},
      {"freeze", "\"freeze\" is not PARAMETER=VALUE"},
      {"=1", "\"=1\" is not PARAMETER=VALUE"},
  };
  for (const auto& [text, right] : wrong) {
    EXPECT_EQ(Complaint([&, given = text] { return known.Read(given); }), right);
  }
}

TEST(Words, AStepEndsWithTheRange) {
  const Words known;
  const Parameter zoom = known.words.Describe(known.words.Find("h zoom"));
  EXPECT_EQ(Stepped(zoom, 500, 10), 510);
  EXPECT_EQ(Stepped(zoom, 995, 10), 1000);
  EXPECT_EQ(Stepped(zoom, 0, -2147483647), 100);
}

TEST(CommandLine, OptionsStandBeforeAndBehindTheCommand) {
  for (const QStringList& words : {QStringList{"ctl", "-p", "5", "--json", "get", "zoom"},
                                   {"ctl", "get", "-p5", "zoom", "--json"},
                                   {"ctl", "-p", "7", "get", "zoom", "--json", "--port", "5"}}) {
    QCommandLineParser parser;
    const Invocation invocation = ReadCommandLine(words, parser);
    EXPECT_EQ(invocation.command->name, "get");
    EXPECT_EQ(invocation.arguments, std::vector<std::string>{"zoom"});
    EXPECT_TRUE(parser.isSet("json") && parser.value("port") == "5");
  }
}

TEST(CommandLine, SaysWhatWouldHaveBeenRight) {
  const std::pair<QStringList, const char*> cases[] = {
      {{"ctl"}, "no command is given; \"kalde2ctl --help\" tells what there is"},
      {{"ctl", "gte"}, "there is no command \"gte\"; \"kalde2ctl --help\" tells what there is"},
      {{"ctl", "get"}, "get takes PARAMETER...; \"kalde2ctl get --help\" tells what there is"},
      {{"ctl", "store", "it"},
       "store takes no further words; \"kalde2ctl store --help\" tells what there is"},
      {{"ctl", "--all", "list"}, "Unknown option 'all'; \"kalde2ctl --help\" tells what there is"},
      {{"ctl", "get", "--all", "x"},
       "Unknown option 'all'; \"kalde2ctl get --help\" tells what there is"},
      {{"ctl", "get", "x", "-p"},
       "Missing value after '-p'; \"kalde2ctl get --help\" tells what there is"},
  };
  for (const auto& [words, right] : cases) {
    QCommandLineParser parser;
    EXPECT_EQ(Complaint([&, given = words] { return ReadCommandLine(given, parser); }), right);
  }
}

}  // namespace
}  // namespace kalde2

// What a user may write, and what is made of it: the texts in words/. Below each line stands what
// it means, or with "!" what is wrong with it. KALDE2_UPDATE=1 writes the texts anew.
//
//     find: WORD                     address of a parameter
//     value: PARAMETER=VALUE         number, or step and where it leads
//     kalde2ctl: WORD...             command, its words, options
//     ->: BYTES and <-: BYTES        what goes to the unit and comes from it, as %0D where needed

#include <QProcess>
#include <functional>
#include <map>
#include <sstream>

#include "ctl/command_line.h"
#include "ctl/line_words.h"
#include "ctl/parameter_words.h"
#include "ctl/unit_access.h"
#include "model/mod_Producttypes.h"
#include "tests/support/written_down.h"

namespace kalde2 {
namespace {

/// The words of a unit of type 35 with two inputs.
class Words : public testing::TestWithParam<std::filesystem::path> {
 protected:
  Words() {
    AddProductEntries(unit_.catalogue, 35);
    LoadInputNames(unit_.input_names);
    for (const auto& [source, name] : {std::pair{16, 0}, {48, 48}}) {
      const auto place = static_cast<std::size_t>(source);
      unit_.connectivity.SourceFitted[place] = true;
      unit_.connectivity.SourceInfo[place].NameIndex = static_cast<std::int16_t>(name);
    }
    LoadValueNames(unit_.value_names, 35, unit_.input_names, unit_.connectivity);
  }

  [[nodiscard]] std::string Meaning(const std::string& line) const try {
    const std::size_t end = line.find(':');
    const std::size_t rest = line.find_first_not_of(' ', end + 1);
    return meanings_.at(line.substr(0, end))(line.substr(std::min(rest, line.size())));
  } catch (const CommandFault& fault) {
    EXPECT_EQ(fault.Status(), ExitStatus::kUsage);
    return std::string("! ") + fault.what();
  }

 private:
  [[nodiscard]] std::string OfValue(const std::string& text) const {
    constexpr int kPresent = 500;
    const Assignment assignment = SplitAssignment(text);
    const Parameter parameter = words_.Describe(words_.Find(assignment.parameter));
    const auto [is_step, number] = ReadValue(parameter, assignment);
    if (!is_step) return std::to_string(number);
    return "step of " + std::to_string(number) + ", from " + std::to_string(kPresent) + " to " +
           std::to_string(Stepped(parameter, kPresent, number));
  }

  [[nodiscard]] static std::string OfCommandLine(const std::string& line) {
    QCommandLineParser parser;
    const Invocation invocation = ReadCommandLine(
        QProcess::splitCommand("kalde2ctl " + QString::fromStdString(line)), parser);
    std::string meaning(invocation.command->name);
    for (const std::string& word : invocation.arguments) meaning += " \"" + word + '"';
    for (const QString& option : parser.optionNames()) {
      meaning += ", " + (option + ' ' + parser.value(option)).trimmed().toStdString();
    }
    return meaning;
  }

  [[nodiscard]] std::string OfBytes(Direction direction, const std::string& text) {
    FrameCutter cutter;
    auto pieces = cutter.Put(QByteArray::fromPercentEncoding(text.c_str()).toStdString());
    if (const std::string rest = cutter.TakeRest(); !rest.empty()) pieces.push_back({rest, false});
    std::string meaning;
    for (const FrameCutter::Piece& piece : pieces) {
      meaning += (meaning.empty() ? "" : "; ") + line_words_.Of(direction, piece);
    }
    return meaning;
  }

  using Text = const std::string&;
  const std::map<std::string, std::function<std::string(Text)>> meanings_ = {
      {"find", [this](Text word) { return std::to_string(AddressOf(words_.Find(word))); }},
      {"value", [this](Text text) { return OfValue(text); }},
      {"kalde2ctl", [](Text line) { return OfCommandLine(line); }},
      {"->", [this](Text bytes) { return OfBytes(Direction::kToUnit, bytes); }},
      {"<-", [this](Text bytes) { return OfBytes(Direction::kFromUnit, bytes); }},
  };
  NullDisplay display_;
  UnitModel unit_{display_, display_};
  ParameterWords words_{unit_};
  LineWords line_words_;
};

TEST_P(Words, MeanWhatIsWrittenDown) {
  std::ostringstream log;
  std::istringstream lines(ReadText(GetParam()));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("  ")) continue;
    log << line << '\n';
    if (!line.empty() && !line.starts_with('#')) log << "  " << Meaning(line) << '\n';
  }
  ExpectAsWrittenDown(log.str(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, Words, testing::ValuesIn(WrittenDownIn("ctl/words")), NameOfText);

}  // namespace
}  // namespace kalde2

#include "ctl/command_line.h"

#include <QCoreApplication>
#include <sstream>

#include "ctl/command_table.h"

namespace kalde2 {
namespace {

constexpr std::size_t kHelpWidth = 79;

constexpr const char* kStatusHelp =
    "Exit status: 0 done, 1 differences found or values not taken, 2 wrong usage or a file that "
    "cannot be read or written, 3 port, 4 no unit or one that cannot do this, 5 refused by the "
    "unit, 130 ended by a signal.";

QString Wrapped(const std::string& text) {
  std::istringstream words(text);
  std::string wrapped;
  std::size_t column = 0;
  for (std::string word; words >> word;) {
    const bool fits = column + word.size() < kHelpWidth;
    if (column > 0) wrapped += fits ? ' ' : '\n';
    column = (fits && column > 0 ? column + 1 : 0) + word.size();
    wrapped += word;
  }
  return QString::fromStdString(wrapped);
}

void AddOptions(QCommandLineParser& parser, std::span<const OptionRow> rows) {
  for (const OptionRow& row : rows) {
    const QString name = QLatin1String(row.name);
    QStringList names{name};
    if (name == QLatin1String("port") || name == QLatin1String("baud")) names.prepend(name.left(1));
    parser.addOption({names, QLatin1String(row.help),
                      row.value_name == nullptr ? QString() : QLatin1String(row.value_name)});
  }
}

QString CommandList() {
  constexpr int kNameWidth = 24;
  QString list = QStringLiteral("Commands:\n");
  for (const CommandRow& row : Commands()) {
    QString name =
        QString::fromStdString(std::string(row.name)) + ' ' + QLatin1String(row.arguments);
    list += "  " + name.leftJustified(kNameWidth) + ' ' + QLatin1String(row.help) + ".\n";
  }
  return list;
}

QString ProgramHelp(QCommandLineParser& parser) {
  parser.setApplicationDescription(
      QStringLiteral("A unit of the KALDE2 family from the command line.\n\n") + CommandList() +
      "\n\"kalde2ctl COMMAND --help\" tells more of a command.\n\n" + Wrapped(kStatusHelp));
  parser.addPositionalArgument(QStringLiteral("command"),
                               QStringLiteral("What to do, and what with."),
                               QStringLiteral("COMMAND [ARGUMENT...]"));
  return parser.helpText();
}

QString CommandHelp(QCommandLineParser& parser, const CommandRow& row) {
  QString text = QLatin1String(row.help) + '.';
  if (*row.details != '\0') text += "\n\n" + Wrapped(row.details);
  text += QStringLiteral("\n\n--json prints\n") + Wrapped(row.json);
  text += "\n\n" + Wrapped(kStatusHelp);
  parser.setApplicationDescription(text);
  parser.clearPositionalArguments();
  const QString name = QString::fromStdString(std::string(row.name));
  parser.addPositionalArgument(name, QLatin1String(row.help),
                               (name + ' ' + QLatin1String(row.arguments)).trimmed());
  return parser.helpText();
}

void AddCommonOptions(QCommandLineParser& parser) {
  AddOptions(parser, CommonOptions());
  parser.addHelpOption();
  parser.addVersionOption();
}

[[noreturn]] void Refuse(const QString& problem, const std::string& command = {}) {
  throw CommandFault(ExitStatus::kUsage, problem.toStdString() + "; \"kalde2ctl " + command +
                                             (command.empty() ? "" : " ") +
                                             "--help\" tells what there is");
}

/// What the parser has to say, to be gone on with.
QString ErrorOf(const QCommandLineParser& parser) {
  const QString text = parser.errorText();
  return text.endsWith('.') ? text.chopped(1) : text;
}

/// The command's name and the words behind it.
QStringList WordsBehindCommand(const QStringList& words) {
  QCommandLineParser parser;
  parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
  AddCommonOptions(parser);
  if (!parser.parse(words)) Refuse(ErrorOf(parser));
  return parser.positionalArguments();
}

void CheckCount(const CommandRow& row, qsizetype count) {
  if (count >= row.least && count <= row.most) return;
  const std::string name(row.name);
  if (row.most == 0) Refuse(QString::fromStdString(name) + " takes no further words", name);
  Refuse(QString::fromStdString(name) + " takes " + QLatin1String(row.arguments), name);
}

}  // namespace

Invocation ReadCommandLine(const QStringList& words, QCommandLineParser& parser) {
  const QStringList behind = WordsBehindCommand(words);
  QStringList options = words.first(words.size() - behind.size());
  const CommandRow* row = nullptr;
  if (!behind.isEmpty()) {
    row = FindCommand(behind.constFirst().toStdString());
    if (row == nullptr) Refuse("there is no command \"" + behind.constFirst() + '"');
    AddOptions(parser, row->options);
    options += behind.mid(1);
  }
  AddCommonOptions(parser);
  const std::string name = row == nullptr ? std::string() : std::string(row->name);
  if (!parser.parse(options)) Refuse(ErrorOf(parser), name);
  if (parser.isSet(QStringLiteral("version"))) {
    return {
        nullptr, {}, "kalde2ctl " + QCoreApplication::applicationVersion().toStdString() + '\n'};
  }
  if (parser.isSet(QStringLiteral("help"))) {
    const QString help = row == nullptr ? ProgramHelp(parser) : CommandHelp(parser, *row);
    return {nullptr, {}, help.toStdString()};
  }
  if (row == nullptr) Refuse(QStringLiteral("no command is given"));
  Invocation invocation{row, {}, {}};
  for (const QString& word : parser.positionalArguments()) {
    invocation.arguments.push_back(word.toStdString());
  }
  CheckCount(*row, parser.positionalArguments().size());
  return invocation;
}

}  // namespace kalde2

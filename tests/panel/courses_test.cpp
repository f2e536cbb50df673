// What the operator and the unit do, and all that comes of it: the texts in courses/. A line with
// ">" is an act; below it stand the requests that go out, and then every difference that is to be
// seen: of controls, recorded values, boxes and time. After a change that is meant, KALDE2_UPDATE=1
// writes the texts anew, for their difference to be read.

#include <QAccessible>
#include <QMetaProperty>
#include <QScrollBar>
#include <filesystem>
#include <sstream>

#include "link/per_source.h"
#include "panel/app_info.h"
#include "tests/support/panel_fixture.h"
#include "tests/support/written_down.h"

namespace kalde2 {
namespace {

using std::chrono::milliseconds;

std::string Word(std::istringstream& words) {
  std::string word;
  words >> word;
  return word;
}

int Number(std::istringstream& words) {
  return std::stoi(Word(words));
}

QString Rest(std::istringstream& words) {
  std::string rest;
  std::getline(words >> std::ws, rest);
  return QString::fromUtf8(rest.c_str());
}

class Courses : public PanelFixture, public ::testing::WithParamInterface<std::filesystem::path> {
 protected:
  /// Does what a line says, and writes down what comes of it.
  void Perform(const std::string& act) {
    if (std::exchange(is_stale_, false)) Unlogged([this] { LogDifferences(); });
    log << (depth_++ == 0 ? "> " : "  > ") << act << '\n';
    Do(act);
    LogDifferences();
    --depth_;
  }

  /// Does what only leads to where a course begins.
  void Prepare(const std::string& act) {
    Unlogged([&] { Do(act); });
    is_stale_ = true;
    log << ">> " << act << '\n';
  }

  std::ostringstream log;
  TempFolder folder;

 private:
  using State = std::map<std::string, std::string>;
  using Words = std::istringstream;

  void Connect(Words& words) {
    UnitOptions options{.product_type = Number(words), .fitted_sources = {}};
    std::istringstream sources(QString::fromStdString(Word(words)).replace(',', ' ').toStdString());
    if (const std::string reads = Word(words); !reads.empty())
      options.autoset_reads = std::stoi(reads);
    for (int source = 0; sources >> source;) options.fitted_sources.push_back(source);
    options.resolutions.resize(2);
    ConnectUnit(std::move(options));
    port.on_write = [this, answer = port.on_write](std::string_view frame) {
      if (is_logged_) LogDifferences();
      const QByteArray text(frame.data(), static_cast<int>(frame.size()) - 1);
      log << "  sends " << text.toPercentEncoding("?").toStdString();
      if (frame.starts_with("F04")) log << "  " << AddressIn(frame);
      log << '\n';
      return answer(frame);
    };
  }

  static int AddressIn(std::string_view frame) {
    return std::stoi(std::string(frame.substr(8, 3)), nullptr, 16);
  }

  void StartAnew() {
    panel.reset();
    Start();
    // The machine's time is none of the course's.
    for (auto* const timer : Window().findChildren<QTimer*>())
      timer->setInterval(std::chrono::hours(1));
    for (const cpvSlider* const slider : Form().sliders) {
      QObject::connect(slider, &cpvSlider::ValueChanged, slider, [this, slider](int value) {
        log << "  " << slider->objectName().toStdString() << " shows " << value << '\n';
      });
    }
  }

  /// A reply of the first source, or of the one that is named.
  void Told(int address, int value, const std::string& source) {
    std::string reply = WriteOf(address, value, source.empty() ? 16 : std::stoi(source));
    panel->UnitSession().Link().ParseReply(reply.replace(1, 2, "44"));
  }

  void Keys(QWidget& control, const QString& keys) {
    Focus(control);
    for (const QString& key : keys.split(' ')) {
      const QKeyCombination combination = QKeySequence(key)[0];
      QTest::keyClick(&control, combination.key(), combination.keyboardModifiers());
    }
  }

  /// What an assistive tool does: sets a value, or toggles a mark.
  static void Assist(QWidget* control, const QString& value) {
    auto* const node = QAccessible::queryAccessibleInterface(control);
    if (auto* const range = node->valueInterface()) {
      range->setCurrentValue(value.toInt());
    } else {
      node->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    }
  }

  static void Commit(QWidget& field, const QString& text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(&field, &event);
  }

  /// Where letters go: the window, or the menu that is open.
  [[nodiscard]] QWidget* KeyTarget() const {
    QWidget* const menu = QApplication::activePopupWidget();
    return menu != nullptr ? menu : &Window();
  }

  /// Presses a letter while Alt is down.
  void Letter(const QString& letter) {
    const auto key = static_cast<Qt::Key>(letter[0].unicode());
    QTest::simulateEvent(KeyTarget(), true, key, Qt::AltModifier, QString(), false);
  }

  /// Presses Alt, which closes an open menu, and a letter.
  void Alt(const QString& letter) {
    if (KeyTarget() == &Window()) Window().activateWindow();  // closed menus stay active headless
    QTest::simulateEvent(KeyTarget(), true, Qt::Key_Alt, Qt::AltModifier, QString(), false);
    Letter(letter);
    QTest::simulateEvent(KeyTarget(), false, Qt::Key_Alt, {}, QString(), false);
  }

  static void LeaveMenus() {
    while (QWidget* const menu = QApplication::activePopupWidget()) menu->close();
  }

  [[nodiscard]] int ShownWindows() const {
    int count = 0;
    for (const QWidget* const widget : Window().findChildren<QWidget*>()) {
      count += widget->isWindow() && widget->isVisible() && widget->windowType() != Qt::Popup;
    }
    return count;
  }

  void Do(const std::string& act) {
    std::istringstream words(act);
    const auto found = acts_.find(Word(words));
    ASSERT_TRUE(found != acts_.end()) << act;
    found->second(words);
    QCoreApplication::processEvents();
  }

  template <typename Work>
  void Unlogged(Work work) {
    const std::string before = log.str();
    is_logged_ = false;
    work();
    is_logged_ = true;
    log.str(before);
    log.seekp(0, std::ios::end);
  }

  [[nodiscard]] QWidget* Control(Words& words) { return Find<QWidget>(Word(words).c_str()); }

  static const std::vector<QMetaProperty>& ToldOf(const QMetaObject& type) {
    static std::map<const QMetaObject*, std::vector<QMetaProperty>> known;
    const auto [found, is_new] = known.try_emplace(&type);
    if (!is_new) return found->second;
    for (const char* name :
         {"text", "toolTip", "enabled", "visible", "checked", "valueX", "valueY", "Min", "max",
          "currentIndex", "active", "value", "maximum", "selectedText"}) {
      const int index = type.indexOfProperty(name);
      if (index >= 0) found->second.push_back(type.property(index));
    }
    return found->second;
  }

  [[nodiscard]] State Now() {
    State state;
    const auto put = [&state](const std::string& name, const QString& value) {
      if (!value.isEmpty() && value != "false" && value != "0")
        state[name] =
            QString(value).replace('\n', ' ').replace(AppInfo::kVersion, "VERSION").toStdString();
    };
    for (const auto* const object : Window().findChildren<QObject*>()) {
      const std::string name = object->objectName().toStdString();
      const bool is_part = qobject_cast<const ArrowControl*>(object->parent()) != nullptr;
      if (name.empty() || name.starts_with("qt_") || is_part) continue;
      for (const QMetaProperty& property : ToldOf(*object->metaObject())) {
        put(name + ' ' + property.name(), property.read(object).toString());
      }
      if (const auto* const list = qobject_cast<const QComboBox*>(object)) {
        QStringList items;
        for (int i = 0; i < list->count(); ++i) {
          items << list->itemText(i) + '=' + list->itemData(i).toString();
        }
        put(name + " items", items.join('|'));
      }
    }
    for (int i = 0; i < Form().lst_commands->count(); ++i) {
      const QStringList line = Form().lst_commands->item(i)->text().split(" : ");
      put("line " + line.first().toStdString(), '"' + line.last() + '"');
    }
    put("lines", QString::number(Form().lst_commands->count()));
    put("line", QString::number(Form().lst_commands->currentRow() + 1));
    put("line saved", QString::number(panel->Editor().SavedCommandLine() + 1));
    put("line scrolled",
        QVariant(Form().lst_commands->verticalScrollBar()->value() > 0).toString());
    const QWidget* const focus = Window().focusWidget();
    put("focus", focus == nullptr ? "" : focus->objectName());
    const QWidget* const menu = QApplication::activePopupWidget();
    put("menu", menu == nullptr ? "" : menu->objectName());
    put("windows", QString::number(ShownWindows()));
    const QWidget& field = *Form().txt_commandval;
    put("tinted", QVariant(field.testAttribute(Qt::WA_SetPalette)).toString());
    ValueStore& values = panel->UnitSession().Unit().values;
    const auto put_recorded = [&put](int address, int value, int source = -1) {
      if (value == 0) return;
      const std::string of = source < 0 ? "" : " of " + std::to_string(source);
      put("recorded " + std::to_string(address) + of, QString::number(value));
    };
    for (int i = 0; i < kCatalogueSize; ++i) put_recorded(kFirstAddress + i, values.ParamValue(i));
    for (const PerSourceRow& row : kPerSource) {
      for (const int i : {0, 1, 2, 3, 4, 5, 6, 7, 8}) {
        put_recorded(row.address, values.SourceValue(row.slot, i), i);
      }
    }
    put("open", QVariant(port.open).toString());
    put("last reply", panel->UnitSession().Link().LastReply().Valid ? "valid" : "");
    put("ends", QString::number(ends));
    for (const auto& [key, value] : settings.values)
      put("stored " + key.second, QString::fromStdString("'" + value + "'"));
    put("time", QString::number(clock.Monotonic().count()));
    put("command", QString::number(panel->Editor().CurrentCommand().number + kFirstAddress));
    put("waits nested", QString::number(clock.deepest_wait));
    return state;
  }

  void LogDifferences() {
    for (const auto& box : std::exchange(boxes.shown, {})) log << "  box " << box << '\n';
    for (const auto& box : std::exchange(boxes.confirmations, {})) log << "  asked " << box << '\n';
    for (auto* const asked : {&dialogs.opened, &dialogs.saved}) {
      for (const auto& dialog : std::exchange(*asked, {}))
        log << "  dialog " << dialog.title << '\n';
    }
    for (const PortSetup& setup : std::exchange(port.setups, {})) {
      log << "  opens " << setup.comm_port << ' ' << setup.settings << ' '
          << static_cast<int>(setup.handshaking) << setup.dtr_enable << '\n';
    }
    for (const milliseconds sleep : std::exchange(clock.sleeps, {})) {
      log << "  sleeps " << sleep.count() << '\n';
    }
    if (panel == nullptr) return;
    State now = Now();
    State before = std::exchange(state_, now);
    for (const auto& [name, value] : now) before.try_emplace(name);
    for (const auto& [name, value] : before) {
      if (now[name] != value) log << "  " << name << ": " << value << " -> " << now[name] << '\n';
    }
  }

  // clang-format off
  const std::map<std::string, std::function<void(Words&)>> acts_ = {
      {"after", [this](Words& w) { const milliseconds delay(Number(w)); clock.After(delay, [this, act = Rest(w).toStdString()] { Perform(act); }); }},
      {"alt", [this](Words& w) { Alt(Rest(w)); }},
      {"answer", [this](Words& w) { boxes.answer = Word(w) == "ok"; }},
      {"arrive", [this](Words& w) { port.Arrive(Rest(w).replace("\\r", "\r").toStdString()); }},
      {"change", [this](Words& w) { const int address = Number(w); Unasked(unit->ChangeAtFrontPanel(address, 16, Number(w))); }},
      {"assist", [this](Words& w) { QWidget* const control = Control(w); Assist(control, Rest(w)); }},
      {"choose", [this](Words& w) { Choose(Word(w).c_str()); }},
      {"click", [this](Words& w) { QTest::mouseClick(Control(w), Qt::LeftButton); }},
      {"close", [this](Words&) { Window().close(); }},
      {"commit", [this](Words& w) { QWidget& control = *Control(w); Commit(control, Rest(w)); }},
      {"fault", [this](Words& w) { unit->Faults().Clear(); for (const QString& fault : Rest(w).split(' ')) EXPECT_FALSE(unit->Faults().Add(fault.toStdString())); }},
      {"file", [this](Words& w) { dialogs.name = Word(w); }},
      {"focus", [this](Words& w) { Focus(*Control(w)); }},
      {"hang-up", [this](Words&) { port.HangUp(); }},
      {"hold", [this](Words& w) { QTest::mousePress(Control(w), Qt::LeftButton); }},
      {"key", [this](Words& w) { QWidget& control = *Control(w); Keys(control, Rest(w)); }},
      {"leave", [](Words&) { LeaveMenus(); }},
      {"letter", [this](Words& w) { Letter(Rest(w)); }},
      {"menu", [this](Words& w) { QFocusEvent out(QEvent::FocusOut, Qt::MenuBarFocusReason); QCoreApplication::sendEvent(Control(w), &out); }},
      {"pause", [](Words& w) { QTest::qWait(Number(w)); }},  // for what the toolkit times
      {"press", [this](Words& w) { Press(Word(w).c_str()); }},
      {"release", [this](Words& w) { QTest::mouseRelease(Control(w), Qt::LeftButton); }},
      {"select", [this](Words& w) { SelectLine(Rest(w).toUtf8()); }},
      {"set", [this](Words& w) { QWidget& control = *Control(w); const std::string name = Word(w); control.setProperty(name.c_str(), Rest(w)); }},
      {"setting", [this](Words& w) { const QString text = Rest(w); if (text.isEmpty()) return settings.values.clear(); settings.values[{"Tessaly", text.section('=', 0, 0).toStdString()}] = text.section('=', 1).toStdString(); }},
      {"start", [this](Words&) { StartAnew(); }},
      {"tab", [](Words&) { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); }},
      {"tick", [this](Words& w) { log << (Tick(Word(w).c_str()) ? "" : "  does not run\n"); }},
      {"text", [](Words& w) { const std::string file = Word(w); WriteText(file, Rest(w).replace("\\r", "\r").replace("\\n", "\n").toStdString()); }},
      {"told", [this](Words& w) { const int address = Number(w), value = Number(w); Told(address, value, Word(w)); }},
      {"type", [this](Words& w) { QWidget& field = *Control(w); Keys(field, "Ctrl+A"); QTest::keyClicks(&field, Rest(w).replace("\\r", "\r")); }},
      {"unit", [this](Words& w) { Connect(w); }},
      {"wait", [this](Words& w) { clock.ServeEvents(milliseconds(Number(w))); }},
  };
  // clang-format on
  State state_;
  int depth_ = 0;  ///< acts inside acts
  bool is_logged_ = true;
  bool is_stale_ = false;  ///< what has come of preparations is not looked at yet
};

TEST_P(Courses, GoAsTheyAreWrittenDown) {
  std::istringstream lines(ReadText(GetParam()));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('#') || line.empty()) log << line << '\n';
    if (line.starts_with(">> ")) Prepare(line.substr(3));
    if (line.starts_with("> ")) Perform(line.substr(2));
  }
  ExpectAsWrittenDown(log.str(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, Courses, ::testing::ValuesIn(WrittenDownIn("panel/courses")),
                         NameOfText);

}  // namespace
}  // namespace kalde2

#pragma once

#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>
#include <QWidget>
#include <array>
#include <cstdint>

class QLabel;

namespace kalde2 {

class ArrowPicture;

/// A two-axis stepping pad: four arrows around a title and two value labels.
///
/// Each press of an arrow steps `valueX` (left, right) or `valueY` (up, down) by `StepSingle`
/// within the axis's limits; while the arrow is held, `tmr_repeat` steps on by `StepRepeat` each
/// `RepeatInterval`. Any mouse button steps, and so do the arrow keys while the pad has the focus.
/// A hold ends with the release of the button or key that began it, and also when the pad is
/// disabled or hidden; one that a key began ends with the focus as well, for its release goes
/// elsewhere then.
///
/// Child objects: `pic_arrow_0` (left), `pic_arrow_1` (up), `pic_arrow_2` (right), `pic_arrow_3`
/// (down), the labels `lbl_arrowtitle`, `lbl_valx`, `lbl_valy`, and the timer `tmr_repeat`.
class ArrowControl : public QWidget {
  Q_OBJECT
  Q_PROPERTY(int BackColor READ BackColor WRITE setBackColor)
  Q_PROPERTY(int ForeColor READ ForeColor WRITE setForeColor)
  Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled)
  Q_PROPERTY(QFont Font READ Font WRITE setTitleFont)
  Q_PROPERTY(qint16 BackStyle READ BackStyle WRITE setBackStyle)
  Q_PROPERTY(qint16 BorderStyle READ BorderStyle WRITE setBorderStyle)
  Q_PROPERTY(QString Title READ Title WRITE setTitle)
  Q_PROPERTY(QString TAG2 READ TAG2 WRITE setTAG2 NOTIFY TAG2Changed)
  Q_PROPERTY(int valueXmin READ valueXmin WRITE setValueXmin)
  Q_PROPERTY(int valueYmin READ valueYmin WRITE setValueYmin)
  Q_PROPERTY(int valueXmax READ valueXmax WRITE setValueXmax)
  Q_PROPERTY(int valueYmax READ valueYmax WRITE setValueYmax)
  Q_PROPERTY(int valueX READ valueX WRITE setValueX)
  Q_PROPERTY(int valueY READ valueY WRITE setValueY)
  Q_PROPERTY(QString TextX READ TextX WRITE setTextX)
  Q_PROPERTY(QString TextY READ TextY WRITE setTextY)
  Q_PROPERTY(qint16 StepSingle READ StepSingle WRITE setStepSingle)
  Q_PROPERTY(qint16 StepRepeat READ StepRepeat WRITE setStepRepeat)
  Q_PROPERTY(int RepeatInterval READ RepeatInterval WRITE setRepeatInterval)
  Q_PROPERTY(bool VisibleX READ VisibleX WRITE setVisibleX)
  Q_PROPERTY(bool visibleY READ visibleY WRITE setVisibleY)
  Q_PROPERTY(bool Reversed READ Reversed WRITE setReversed)

 public:
  /// The arrows, numbered as their objects are named; kNone while no arrow is held.
  enum class Arrow : std::int16_t { kLeft = 0, kUp = 1, kRight = 2, kDown = 3, kNone = 99 };

  /// Colours that stand for those of the palette: every value with the top bit set does.
  static constexpr int kPaletteBackColor = static_cast<int>(0x8000000FU);
  static constexpr int kPaletteForeColor = static_cast<int>(0x80000012U);

  /// A pad with both values 0, limits -100..100, prefixes "H: " and "V: ", steps 1 and 5, both axes
  /// shown, no repetition (interval 0) and the title "PAN".
  explicit ArrowControl(QWidget* parent = nullptr);

  /// Colour of the arrows and labels, 0x00BBGGRR. Initially the palette's.
  [[nodiscard]] int BackColor() const { return back_color_; }
  void setBackColor(int color);

  /// Colour of the arrow heads and of the labels' texts, 0x00BBGGRR. Initially the palette's.
  [[nodiscard]] int ForeColor() const { return fore_color_; }
  void setForeColor(int color);

  /// Whether the pad itself is enabled, whatever its container is. The setter does what QWidget's
  /// does and marks the property as changed besides.
  [[nodiscard]] bool Enabled() const { return isEnabledTo(parentWidget()); }
  void setEnabled(bool enabled);

  /// Font of the title alone; until it is set or read, the pad's.
  [[nodiscard]] QFont Font() const;
  void setTitleFont(const QFont& font);

  /// 0: the background is the container's; 1: it is filled with `BackColor`.
  [[nodiscard]] std::int16_t BackStyle() const { return back_style_; }
  void setBackStyle(std::int16_t style);

  /// 0: no border; 1: a thin line around the pad.
  [[nodiscard]] std::int16_t BorderStyle() const { return border_style_; }
  void setBorderStyle(std::int16_t style);

  /// Caption of the pad.
  [[nodiscard]] QString Title() const;
  void setTitle(const QString& title);

  /// Free text for the owner of the pad.
  [[nodiscard]] QString TAG2() const { return tag2_; }
  void setTAG2(const QString& tag);

  /// Limits of the steps. Changing one moves no value.
  [[nodiscard]] int valueXmin() const { return x_.min; }
  void setValueXmin(int limit);
  [[nodiscard]] int valueYmin() const { return y_.min; }
  void setValueYmin(int limit);
  [[nodiscard]] int valueXmax() const { return x_.max; }
  void setValueXmax(int limit);
  [[nodiscard]] int valueYmax() const { return y_.max; }
  void setValueYmax(int limit);

  /// The values. A value that is set is taken as it is, beyond the limits too, and raises no event.
  [[nodiscard]] int valueX() const { return x_.value; }
  void setValueX(int value);
  [[nodiscard]] int valueY() const { return y_.value; }
  void setValueY(int value);

  /// Prefixes of the value labels; the value follows without a space of its own.
  [[nodiscard]] QString TextX() const { return x_.prefix; }
  void setTextX(const QString& text);
  [[nodiscard]] QString TextY() const { return y_.prefix; }
  void setTextY(const QString& text);

  /// Step of a press.
  [[nodiscard]] std::int16_t StepSingle() const { return step_single_; }
  void setStepSingle(std::int16_t step);

  /// Step of each repetition while an arrow is held.
  [[nodiscard]] std::int16_t StepRepeat() const { return step_repeat_; }
  void setStepRepeat(std::int16_t step);

  /// Interval of `tmr_repeat` in milliseconds, which is also the delay before the first repetition.
  /// With 0 a held arrow steps only once; a negative interval counts as 0.
  [[nodiscard]] int RepeatInterval() const { return tmr_repeat_.interval(); }
  void setRepeatInterval(int milliseconds);

  /// Which axes are shown. Takes effect when the properties are read, not when it is written.
  /// Without `VisibleX` the vertical axis is shown whatever `visibleY` says.
  [[nodiscard]] bool VisibleX() const { return x_.visible; }
  void setVisibleX(bool visible);
  [[nodiscard]] bool visibleY() const { return y_.visible; }
  void setVisibleY(bool visible);

  /// Whether each arrow steps its value the other way round.
  [[nodiscard]] bool Reversed() const { return reversed_; }
  void setReversed(bool reversed);

  /// Repaints the whole pad at once.
  Q_INVOKABLE void Refresh() { repaint(); }

  /// The arrow that is held.
  [[nodiscard]] Arrow PressedArrow() const { return pressed_; }

  /// Sets every property from `bag`, one that is absent or unreadable to its default, and applies
  /// the axis visibility. The names are case-sensitive and are the properties' own, but for "textX"
  /// and "textY". No property counts as changed afterwards.
  void ReadProperties(const QVariantMap& bag);

  /// Stores every property in `bag` under the names that ReadProperties() reads. No property counts
  /// as changed afterwards.
  void WriteProperties(QVariantMap& bag);

  /// The properties written since the pad was made, read or stored, in order of first change.
  [[nodiscard]] QStringList ChangedProperties() const { return changed_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  /// Raised after every step, also one that a limit left without effect.
  void ValueChanged(int x, int y);
  /// `TAG2` was set.
  void TAG2Changed();

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Axis {
    int value = 0;
    int min = -100;
    int max = 100;
    QString prefix;
    bool visible = true;
    QLabel* label = nullptr;
  };

  enum class HeldBy { kMouse, kKey };

  void Press(Arrow arrow, HeldBy held_by);
  void StepOnce(Arrow arrow);
  void Release(Arrow arrow, HeldBy held_by);
  void EndHold();
  void StepBy(Arrow arrow, std::int16_t step);
  void tmr_repeat_Timer();

  [[nodiscard]] ArrowPicture* PictureOf(Arrow arrow) const;
  [[nodiscard]] Arrow ShownArrowOf(int key) const;

  /// Stores a property's new value and marks the property as changed.
  template <typename Member, typename Value>
  void Store(Member& member, const Value& value, const char* property);
  void MarkChanged(const char* property);

  void WriteLabels();
  void NameParts();
  void ApplyAxisVisibility();
  void ApplyColors();
  void LayOutParts();
  void LayOutLabels(const QRect& area);
  /// Height of the up and down arrows and width of the left and right ones, at the least.
  [[nodiscard]] int ArrowThickness() const;
  /// Room for the widest texts of the labels, the values side by side below the title.
  [[nodiscard]] QSize LabelsSize() const;

  QLabel* const lbl_arrowtitle_;
  Axis x_;
  Axis y_;
  std::array<ArrowPicture*, 4> pictures_{};
  QTimer tmr_repeat_;
  Arrow pressed_ = Arrow::kNone;
  HeldBy held_by_ = HeldBy::kMouse;  ///< what holds `pressed_`

  int back_color_ = kPaletteBackColor;
  int fore_color_ = kPaletteForeColor;
  std::int16_t back_style_ = 0;
  std::int16_t border_style_ = 0;
  QString tag2_;
  std::int16_t step_single_ = 1;
  std::int16_t step_repeat_ = 5;
  bool reversed_ = false;
  QStringList changed_;
};

}  // namespace kalde2

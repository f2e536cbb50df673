#pragma once

#include <QIcon>
#include <QPixmap>
#include <QSlider>
#include <optional>

class QLabel;

namespace kalde2 {

class FineAdjustPopup;

/// A slider with its value beside it and a fine adjustment.
///
/// Mouse, arrow and page keys, Home and End, and assistive tools move it as they move every slider;
/// the wheel does so only while it has the focus. A right click, the menu key or Shift+F10 opens a
/// small spin box for single steps.
class cpvSlider : public QSlider {
  Q_OBJECT
  Q_PROPERTY(int Min READ Min WRITE setMin)
  Q_PROPERTY(int max READ max WRITE setMax)
  Q_PROPERTY(int Value READ Value WRITE setValue NOTIFY ValueChanged)
  Q_PROPERTY(int Initial READ Initial WRITE setInitial)
  Q_PROPERTY(kalde2::cpvSlider::Adjust AdjustType READ AdjustType WRITE setAdjustType)
  Q_PROPERTY(int DecimalDisplay READ DecimalDisplay WRITE setDecimalDisplay)
  Q_PROPERTY(kalde2::cpvSlider::Rail RailStyle READ RailStyle WRITE setRailStyle)
  Q_PROPERTY(QPixmap RailPicture READ RailPicture WRITE setRailPicture)
  Q_PROPERTY(QIcon SliderIcon READ SliderIcon WRITE setSliderIcon)
  Q_PROPERTY(bool ShowValue READ ShowValue WRITE setShowValue)
  Q_PROPERTY(bool ShowValueTip READ ShowValueTip WRITE setShowValueTip)

 public:
  /// The direction in which the slider is moved; a vertical one has its maximum at the top.
  enum class Adjust { kHorizontal = 0, kVertical = 1 };
  Q_ENUM(Adjust)

  /// How the rail is drawn: as the desktop's style draws it, as a plain line, or with
  /// `RailPicture`.
  enum class Rail { kStandard = 0, kLine = 1, kPicture = 2 };
  Q_ENUM(Rail)

  /// A horizontal slider from 0 to 100 at 0, with its value shown.
  explicit cpvSlider(QWidget* parent = nullptr);

  /// Limits. A value that lies outside after a change goes to the nearer limit.
  [[nodiscard]] int Min() const { return minimum(); }
  void setMin(int limit);
  [[nodiscard]] int max() const { return maximum(); }
  void setMax(int limit);

  /// The value shown, always in `Min`..`max`: a value set beyond is clamped. Setting raises
  /// ValueChanged() on a change, and never Moved().
  [[nodiscard]] int Value() const { return value(); }
  void setValue(int value);

  /// Where the slider starts, for its owner; initially 0.
  [[nodiscard]] int Initial() const { return initial_; }
  void setInitial(int value) { initial_ = value; }

  [[nodiscard]] Adjust AdjustType() const;
  void setAdjustType(Adjust type);

  /// Decimals shown, 0..6; initially 0. With 1, the value 125 is shown as 12.5.
  [[nodiscard]] int DecimalDisplay() const { return decimals_; }
  void setDecimalDisplay(int decimals);

  [[nodiscard]] Rail RailStyle() const { return rail_style_; }
  void setRailStyle(Rail style);

  /// Picture that fills the rail with Rail::kPicture; while there is none, the rail is the standard
  /// one.
  [[nodiscard]] QPixmap RailPicture() const { return rail_picture_; }
  void setRailPicture(const QPixmap& picture);

  /// Drawn in place of the handle, in its size; while there is none, the handle is the style's.
  [[nodiscard]] QIcon SliderIcon() const { return slider_icon_; }
  void setSliderIcon(const QIcon& icon);

  /// Whether the value stands beside the slider (below a vertical one); initially true.
  [[nodiscard]] bool ShowValue() const { return show_value_; }
  void setShowValue(bool show);

  /// Whether a tip with the value follows the handle, above it, while it is dragged; initially
  /// false.
  [[nodiscard]] bool ShowValueTip() const { return show_value_tip_; }
  void setShowValueTip(bool show) { show_value_tip_ = show; }

  /// Whether the operator has the value in hand: he holds the handle or the rail with the mouse, or
  /// has the fine adjustment open.
  [[nodiscard]] bool isHeld() const;

  /// Shows a value that is told from elsewhere: at once, or while the slider is held when it is let
  /// go, unless it has been changed by then. Otherwise as `Value`.
  void Follow(int value);

  /// Goes back to where it was before the operator's last move. Not the operator's change.
  void TakeBack() { setValue(before_move_); }

  /// Opens the fine adjustment below the handle. Does nothing while the slider is held or disabled.
  void OpenFineAdjust();

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 signals:
  /// The value changed, by the operator or by `Value`.
  void ValueChanged(int value);
  /// The operator changed the value: with the mouse, the wheel, the keyboard, the fine adjustment
  /// or an assistive tool. Comes right after ValueChanged().
  void Moved(int value);

 protected:
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void initStyleOption(QStyleOptionSlider* option) const override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void ChangeRange(int min, int max);
  void OnValueChanged(int value);
  void AnnounceMove();
  void ShowWithheld();
  void ShowTip();
  void HideTip();

  [[nodiscard]] bool DrawsOwnRail() const;
  [[nodiscard]] QRect HandleRect() const;
  [[nodiscard]] QRect Inside() const;
  [[nodiscard]] QRect RailArea() const;
  [[nodiscard]] QRect ValueArea() const;
  [[nodiscard]] QSize ValueSize() const;
  [[nodiscard]] QSize SizeWithRail(int rail_length) const;
  [[nodiscard]] QString TextOf(int value) const;
  void PaintRail(QPainter& painter, const QRect& groove) const;
  void PaintSlider(QPainter& painter) const;
  void RefreshLayout();

  int initial_ = 0;
  int decimals_ = 0;
  Rail rail_style_ = Rail::kStandard;
  QPixmap rail_picture_;
  QIcon slider_icon_;
  bool show_value_ = true;
  bool show_value_tip_ = false;

  int shown_ = 0;
  int before_move_ = 0;
  bool set_by_code_ = false;     ///< the change under way comes from a setter
  bool in_mouse_press_ = false;  ///< nobody hears of a change before the press is done
  bool right_pressed_ = false;
  std::optional<int> withheld_;  ///< the newest value to follow once the slider is let go
  FineAdjustPopup* fine_adjust_ = nullptr;
  QLabel* tip_ = nullptr;
};

}  // namespace kalde2

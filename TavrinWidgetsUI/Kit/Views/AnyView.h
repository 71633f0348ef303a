#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <concepts>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>

namespace tavrin {

class ViewContext;
class AnyView;
struct Shape;

/// An offer without a bound in that direction.
inline constexpr double unbounded = std::numeric_limits<double>::infinity();

enum class Alignment {
  topLeading,
  top,
  topTrailing,
  leading,
  centre,
  trailing,
  bottomLeading,
  bottom,
  bottomTrailing,
};

/// A `size` set into `rect` as `alignment` says; `isMirrored` where leading is at the right.
QRectF aligned(const QSizeF& size, const QRectF& rect, Alignment alignment,
               bool isMirrored = false);

struct Insets {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  bool operator==(const Insets&) const = default;
};

/// Bounds in points; what is missing is the content's own affair. `unbounded` as a maximum takes
/// all that is offered.
struct FrameLimits {
  std::optional<double> minWidth = {};
  std::optional<double> maxWidth = {};
  std::optional<double> minHeight = {};
  std::optional<double> maxHeight = {};
  bool operator==(const FrameLimits&) const = default;
};

/// What a click on a part of a picture does. Two actions with the same `id` are the same action:
/// a view that differs in `run` alone counts as unchanged.
struct ViewAction {
  std::string id;
  std::function<void()> run = {};
  bool operator==(const ViewAction& other) const { return id == other.id; }
};

/// The modifiers, for every view alike. Each returns a new view around the old one.
template <class Self> class Modifiers {
public:
  AnyView padding(double all) const;
  AnyView padding(double horizontal, double vertical) const;
  AnyView padding(const Insets& insets) const;
  /// Exactly this size, the content aligned in it.
  AnyView frame(double width, double height, Alignment alignment = Alignment::centre) const;
  AnyView frame(const FrameLimits& limits, Alignment alignment = Alignment::centre) const;
  AnyView width(double width, Alignment alignment = Alignment::centre) const;
  AnyView height(double height, Alignment alignment = Alignment::centre) const;
  /// Takes all the room offered, the content aligned in it.
  AnyView fill(Alignment alignment = Alignment::centre) const;
  /// Takes all the width offered.
  AnyView fillWidth(Alignment alignment = Alignment::leading) const;
  /// Under or over the content, at the content's size.
  AnyView background(const AnyView& under) const;
  AnyView overlay(const AnyView& above, Alignment alignment = Alignment::centre) const;
  AnyView clip(const Shape& shape) const;
  AnyView opacity(double opacity) const;
  /// Turns the picture clockwise about its centre; the room it takes stays.
  AnyView rotation(double degrees) const;
  /// Turns by quarters clockwise, width and height changing places: sideways text.
  AnyView quarterTurns(int turns) const;
  /// Moves the picture only.
  AnyView offset(double dx, double dy) const;
  /// A click in its rectangle is `action`; `label` is its name for assistive technology.
  AnyView button(const ViewAction& action, const QString& label) const;
  /// Name and value for assistive technology, in place of what stands inside.
  AnyView accessibility(const QString& label, const QString& value = {}) const;
  /// Left stays left where the interface runs from right to left: for clocks, what plays, and
  /// graphs of time.
  AnyView unmirrored() const;
  /// Keeps the painted pixels while this part stays equal: for what does not tick.
  AnyView cached() const;

  bool operator==(const Modifiers&) const = default;
};

/// A node of a view tree: what it needs, and how it is painted. Immutable.
class ViewNode {
public:
  virtual ~ViewNode() = default;
  /// The size in points it takes when offered `offer` (each side 0...unbounded).
  virtual QSizeF measure(ViewContext& context, const QSizeF& offer) const = 0;
  virtual void paint(ViewContext& context, const QRectF& rect) const = 0;
  virtual bool isEqual(const ViewNode& other) const = 0;
};

/// What can be a view: a value with equality that measures and paints itself.
template <class T>
concept ViewContent = requires(const T content, ViewContext& context, const QSizeF offer,
                               const QRectF rect) {
  { content.measure(context, offer) } -> std::same_as<QSizeF>;
  content.paint(context, rect);
}
&&std::equality_comparable<T>;

/// Any view, as a cheap value: a shared pointer to an immutable tree. Equality is structural.
class AnyView : public Modifiers<AnyView> {
public:
  /// The empty view: no size, no pixels.
  AnyView() = default;
  template <class T>
  requires(!std::same_as<T, AnyView>) && ViewContent<T> AnyView(T content)
      : node_(std::make_shared<const Node<T>>(std::move(content))) {}

  bool isEmpty() const { return node_ == nullptr; }
  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return node_ ? node_->measure(context, offer) : QSizeF(0, 0);
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    if (node_)
      node_->paint(context, rect);
  }
  /// The content where it is a T.
  template <ViewContent T> const T* as() const {
    const auto* node = dynamic_cast<const Node<T>*>(node_.get());
    return node ? &node->content : nullptr;
  }
  bool operator==(const AnyView& other) const {
    return node_ == other.node_ || (node_ && other.node_ && node_->isEqual(*other.node_));
  }

private:
  template <class T> struct Node final : ViewNode {
    explicit Node(T value) : content(std::move(value)) {}
    QSizeF measure(ViewContext& context, const QSizeF& offer) const override {
      return content.measure(context, offer);
    }
    void paint(ViewContext& context, const QRectF& rect) const override {
      content.paint(context, rect);
    }
    bool isEqual(const ViewNode& other) const override {
      return typeid(other) == typeid(Node) && content == static_cast<const Node&>(other).content;
    }
    T content;
  };

  std::shared_ptr<const ViewNode> node_;
};

} // namespace tavrin

#include "TavrinPlatform/macOS/Tile/MacPanelPopover.h"

#import <AppKit/AppKit.h>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

#include <optional>
#include <utility>

@interface TavrinPopoverDelegate : NSObject <NSPopoverDelegate>
@property(nonatomic) tavrin::MacPanelPopover::Parts* parts;
@end

namespace tavrin {

namespace {

/// Calls `pressed` for an Escape that nobody in the panel had a use for.
class EscapeFilter final : public QObject {
public:
  std::function<void()> pressed;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress ||
        static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
      return QObject::eventFilter(watched, event);
    pressed();
    return true;
  }
};

} // namespace

struct MacPanelPopover::Parts {
  NSPopover* popover = nil;
  NSPanel* anchor = nil;
  /// The popover's view; the widget's own view lies in it.
  NSView* ground = nil;
  TavrinPopoverDelegate* delegate = nil;
  NSRunningApplication* previous = nil;
  /// `ground` as the toolkit knows it; what lies in it has to go first.
  std::unique_ptr<QWindow> host;
  EscapeFilter escape;
  std::unique_ptr<QWidget> content;
  std::function<void()> closed;
  std::function<double()> uptime;
  bool isAskedToClose = false;
  /// When it last closed by itself.
  std::optional<double> closedAt;

  void adopt(QWidget* widget);
  void didClose();
};

namespace {

/// Seconds between a click on the tile and the reopen request that comes of it, at most.
constexpr double sameClick = 0.3;

NSRectEdge edgeOf(RectEdge edge) {
  switch (edge) {
  case RectEdge::minX:
    return NSRectEdgeMinX;
  case RectEdge::minY:
    return NSRectEdgeMinY;
  case RectEdge::maxX:
    return NSRectEdgeMaxX;
  case RectEdge::maxY:
    return NSRectEdgeMaxY;
  }
  return NSRectEdgeMaxY;
}

NSPanel* makeAnchor() {
  NSPanel* anchor = [[NSPanel alloc] initWithContentRect:NSMakeRect(0, 0, 1, 1)
                                               styleMask:NSWindowStyleMaskNonactivatingPanel
                                                 backing:NSBackingStoreBuffered
                                                   defer:NO];
  anchor.releasedWhenClosed = NO;
  anchor.opaque = NO;
  anchor.backgroundColor = NSColor.clearColor;
  anchor.hasShadow = NO;
  anchor.level = CGWindowLevelForKey(kCGDockWindowLevelKey) + 1;
  anchor.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                              NSWindowCollectionBehaviorIgnoresCycle |
                              NSWindowCollectionBehaviorFullScreenAuxiliary;
  anchor.ignoresMouseEvents = YES;
  return anchor;
}

/// Whom the focus goes back to: nothing changes while this process is in front.
NSRunningApplication* rememberedApplication(NSRunningApplication* before) {
  NSRunningApplication* front = NSWorkspace.sharedWorkspace.frontmostApplication;
  if (front != nil &&
      front.processIdentifier == NSRunningApplication.currentApplication.processIdentifier)
    return before;
  return front;
}

} // namespace

MacPanelPopover::MacPanelPopover(std::function<double()> uptime)
    : parts_(std::make_unique<Parts>()) {
  parts_->uptime = std::move(uptime);
  parts_->ground = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, 1, 1)];
  NSViewController* controller = [[NSViewController alloc] init];
  controller.view = parts_->ground;
  parts_->delegate = [[TavrinPopoverDelegate alloc] init];
  parts_->delegate.parts = parts_.get();
  parts_->popover = [[NSPopover alloc] init];
  parts_->popover.behavior = NSPopoverBehaviorTransient;
  parts_->popover.animates = YES;
  parts_->popover.contentViewController = controller;
  parts_->popover.delegate = parts_->delegate;
  parts_->anchor = makeAnchor();
  parts_->host.reset(QWindow::fromWinId(reinterpret_cast<WId>((__bridge void*)parts_->ground)));
  parts_->escape.pressed = [this] { close(); };
  parts_->closed = [this] {
    if (onClose)
      onClose();
  };
}

MacPanelPopover::~MacPanelPopover() {
  // The delegate may outlive this object by an animation.
  parts_->delegate.parts = nullptr;
  parts_->popover.delegate = nil;
  [parts_->popover close];
  [parts_->anchor orderOut:nil];
}

void MacPanelPopover::Parts::adopt(QWidget* widget) {
  content.reset(widget);
  if (widget == nullptr)
    return;
  widget->installEventFilter(&escape);
  if (!host)
    return;
  widget->setWindowFlags(Qt::FramelessWindowHint);
  widget->winId(); // makes the widget's own view
  widget->windowHandle()->setParent(host.get());
  widget->move(0, 0);
  widget->show();
}

void MacPanelPopover::Parts::didClose() {
  [anchor orderOut:nil];
  closedAt = std::exchange(isAskedToClose, false) ? std::nullopt : std::optional(uptime());
  if (NSApplication.sharedApplication.active && previous != nil)
    [previous activateWithOptions:NSApplicationActivationOptions{}];
  previous = nil;
  if (closed)
    closed();
}

void MacPanelPopover::setContent(QWidget* content) {
  parts_->adopt(content);
}

QWidget* MacPanelPopover::content() const {
  return parts_->content.get();
}

void MacPanelPopover::setContentSize(QSize size) {
  parts_->popover.contentSize = NSMakeSize(size.width(), size.height());
  if (parts_->content)
    parts_->content->resize(size);
}

bool MacPanelPopover::isShown() const {
  return parts_->popover.shown;
}

void MacPanelPopover::show(Point anchor, RectEdge edge) {
  [parts_->anchor setFrameOrigin:NSMakePoint(anchor.x, anchor.y)];
  if (parts_->popover.shown)
    return;
  parts_->previous = rememberedApplication(parts_->previous);
  [parts_->anchor orderFrontRegardless];
  if (@available(macOS 14.0, *))
    [NSApplication.sharedApplication activate];
  NSView* tile = parts_->anchor.contentView;
  if (tile == nil)
    return;
  [parts_->popover showRelativeToRect:tile.bounds ofView:tile preferredEdge:edgeOf(edge)];
  // Keys go to the panel at once, as if the user had clicked into it.
  [parts_->ground.window makeKeyWindow];
  if (parts_->content) {
    parts_->content->activateWindow();
    parts_->content->setFocus(Qt::PopupFocusReason);
  }
}

void MacPanelPopover::close() {
  if (!parts_->popover.shown)
    return;
  parts_->isAskedToClose = true;
  [parts_->popover performClose:nil];
}

bool MacPanelPopover::hasJustClosedByItself() const {
  return parts_->closedAt && parts_->uptime() - *parts_->closedAt < sameClick;
}

} // namespace tavrin

@implementation TavrinPopoverDelegate
- (void)popoverDidClose:(NSNotification*)notification {
  (void)notification;
  if (self.parts != nullptr)
    self.parts->didClose();
}
@end

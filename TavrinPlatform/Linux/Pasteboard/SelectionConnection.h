#pragma once

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace tavrin {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <class Reply> using ReplyPtr = std::unique_ptr<Reply, FreeReply>;

/// A connection to the X server for one thread of its own, with a window that never shows.
/// Where there is no server, `isOpen` is false and nothing else may be called.
class SelectionConnection {
public:
  SelectionConnection();

  bool isOpen() const;
  int descriptor() const { return xcb_get_file_descriptor(x_.get()); }
  xcb_connection_t* get() const { return x_.get(); }
  /// Owns the selection and is told of its changes.
  xcb_window_t window() const { return window_; }
  /// The number of the first event of the selection extension; 0 without it.
  std::uint8_t fixesEvent() const { return fixesEvent_; }

  /// Told of changes of its properties. Destroyed with `xcb_destroy_window`.
  xcb_window_t makeWindow() const;
  xcb_atom_t atom(const std::string& name);
  /// Names of many at once; each asked of the server once.
  std::vector<std::string> names(const std::vector<xcb_atom_t>& atoms);
  /// The most bytes of one change of a property.
  std::size_t longestChunk() const;
  void flush() const { xcb_flush(x_.get()); }

private:
  struct Disconnect {
    void operator()(xcb_connection_t* x) const { xcb_disconnect(x); }
  };
  void learnAtoms();
  void watch();

  std::unique_ptr<xcb_connection_t, Disconnect> x_;
  xcb_window_t root_ = XCB_NONE;
  xcb_window_t window_ = XCB_NONE;
  std::uint8_t fixesEvent_ = 0;
  std::map<std::string, xcb_atom_t, std::less<>> atoms_;
  std::map<xcb_atom_t, std::string> names_;
};

} // namespace tavrin

// An input method, as a compositor starts one: once for each field that may be typed into it
// commits what the file "typed" in the folder DESK contains, if there is one.
#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"

#include "input-method.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>

using namespace tavrin;

namespace {

std::string typed() {
  std::ifstream file(std::string(std::getenv("DESK")) + "/typed");
  return {std::istreambuf_iterator<char>(file), {}};
}

bool hasCommitted = false;

/// The field's state is known, and with it the serial that a commit has to bear.
void stateKnown(void*, zwp_input_method_context_v1* context, std::uint32_t serial) {
  const auto words = typed();
  if (words.empty() || std::exchange(hasCommitted, true))
    return;
  zwp_input_method_context_v1_commit_string(context, serial, words.c_str());
}

void activated(void*, zwp_input_method_v1*, zwp_input_method_context_v1* context) {
  hasCommitted = false;
  static const zwp_input_method_context_v1_listener listener{
      [](void*, zwp_input_method_context_v1*, const char*, std::uint32_t, std::uint32_t) {},
      [](void*, zwp_input_method_context_v1*) {},
      [](void*, zwp_input_method_context_v1*, std::uint32_t, std::uint32_t) {},
      [](void*, zwp_input_method_context_v1*, std::uint32_t, std::uint32_t) {},
      stateKnown,
      [](void*, zwp_input_method_context_v1*, const char*) {}};
  zwp_input_method_context_v1_add_listener(context, &listener, nullptr);
}

void deactivated(void*, zwp_input_method_v1*, zwp_input_method_context_v1* context) {
  zwp_input_method_context_v1_destroy(context);
}

} // namespace

int main() {
  WaylandConnection connection;
  if (!connection.isOpen())
    return 1;
  auto* method = connection.registry().bind<zwp_input_method_v1>(zwp_input_method_v1_interface, 1);
  if (method == nullptr)
    return 2;
  static const zwp_input_method_v1_listener listener{activated, deactivated};
  zwp_input_method_v1_add_listener(method, &listener, nullptr);
  while (connection.isOpen()) {
    std::vector<pollfd> nobody;
    connection.wait(nobody, -1);
    connection.flush();
  }
  return 0;
}

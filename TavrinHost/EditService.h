#pragma once

#include "TavrinHost/WidgetLibrary.h"

#include <string>
#include <string_view>

namespace tavrin {

/// Editing a widget's record in the user's editor, now or whenever a slot asks for it.
class EditService {
public:
  /// Who answers edit requests goes by this identifier, so that there is one.
  static constexpr std::string_view identifier = "dev.quellby.Tavrin";

  explicit EditService(HostContext& context) : context_(context) {}

  /// Opens the editor until the form is right, unchanged or given up; then saves and announces.
  /// Throws HostError with the place of the form when it could not be saved: nothing typed is lost.
  void edit(const UUID& id);

  /// Answers edit requests until the process is ended. Throws HostError where there is no session
  /// bus, or where another process answers them.
  [[noreturn]] void serve();

private:
  /// Whether an editor can be shown, and questions asked, where this program was started.
  bool hasTerminal();
  /// Waits until the editor was left. Throws HostError when none could be started, or when it
  /// ended with its terminal.
  void runEditor(const std::filesystem::path& form);
  bool save(const DockWidget& base, const DockWidget& edited);

  HostContext& context_;
};

/// `tavrin edit [NAME]`.
void addEditCommands(CLI::App& app, HostContext& context);

} // namespace tavrin

#include "TavrinPlatform/macOS/Applications/MacRunningApplications.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/macOS/Applications/Processes.h"
#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/Desktop/ApplicationRequest.h"
#include "TavrinPlatform/macOS/Slot/MacFileManager.h"

#import <AppKit/AppKit.h>
#import <dispatch/dispatch.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t launchLimit = 30LL * 1'000'000'000;

/// The bundle that `program` is the executable of; empty where it is none's.
fs::path bundleOf(const fs::path& program) {
  const auto contents = program.parent_path().parent_path();
  const auto bundle = contents.parent_path();
  return contents.filename() == "Contents" && bundle.extension() == ".app" ? bundle : fs::path();
}

NSRunningApplication* applicationNamed(const std::string& identifier) {
  return [NSRunningApplication
             runningApplicationsWithBundleIdentifier:toNSString(identifier)]
      .firstObject;
}

NSWorkspaceOpenConfiguration* configurationOf(const RunningApplications::Launch& launch) {
  NSMutableArray<NSString*>* arguments = [NSMutableArray array];
  for (const auto& argument : launch.arguments)
    [arguments addObject:toNSString(argument)];
  NSMutableDictionary<NSString*, NSString*>* environment = [NSMutableDictionary dictionary];
  for (const auto& [name, value] : launch.environment)
    environment[toNSString(name)] = toNSString(value);
  NSWorkspaceOpenConfiguration* configuration = [NSWorkspaceOpenConfiguration configuration];
  configuration.arguments = arguments;
  configuration.environment = environment;
  // What is started in the background leaves the focus where it is.
  configuration.activates =
      std::find(launch.arguments.begin(), launch.arguments.end(), "--background") ==
      launch.arguments.end();
  configuration.addsToRecentItems = NO;
  return configuration;
}

struct Outcome {
  int process = 0;
  std::string trouble = "the system does not answer";
};

/// Waits for the system, which answers on a thread of its own.
Outcome openApplication(NSURL* bundle, NSWorkspaceOpenConfiguration* configuration) {
  const auto outcome = std::make_shared<Outcome>();
  dispatch_semaphore_t answered = dispatch_semaphore_create(0);
  [NSWorkspace.sharedWorkspace
      openApplicationAtURL:bundle
             configuration:configuration
         completionHandler:^(NSRunningApplication* application, NSError* error) {
           if (application != nil)
             outcome->process = application.processIdentifier;
           else if (error != nil)
             outcome->trouble = toText(error.localizedDescription);
           dispatch_semaphore_signal(answered);
         }];
  if (dispatch_semaphore_wait(answered, dispatch_time(DISPATCH_TIME_NOW, launchLimit)) != 0)
    return {};
  return *outcome;
}

/// Of the whole file, for writing.
struct flock wholeFile() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

class MacRunningApplications final : public RunningApplications {
public:
  explicit MacRunningApplications(const FileManager& files) : files_(files) {}

  bool knowsIdentifiers() override { return true; }

  std::optional<ProcessID> processOwning(const std::string& bundleIdentifier) override {
    if (NSRunningApplication* application = applicationNamed(bundleIdentifier))
      return application.processIdentifier;
    // Its own locks are not told to a process, and closing the file would give them up.
    if (claims_.contains(bundleIdentifier))
      return ::getpid();
    const Descriptor file(::open(claimFile(bundleIdentifier).c_str(), O_RDWR | O_CLOEXEC));
    struct flock lock = wholeFile();
    if (file.number() < 0 || ::fcntl(file.number(), F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK)
      return std::nullopt;
    return lock.l_pid;
  }

  bool claimIdentifier(const std::string& bundleIdentifier) override {
    if (claims_.contains(bundleIdentifier))
      return true;
    const auto path = claimFile(bundleIdentifier);
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    struct flock lock = wholeFile();
    if (file.number() < 0 || ::fcntl(file.number(), F_SETLK, &lock) != 0)
      return false;
    claims_.emplace(bundleIdentifier, std::move(file));
    return true;
  }

  std::vector<ProcessID> processesRunning(const fs::path& program) override {
    std::error_code error;
    const auto resolved = fs::weakly_canonical(program, error);
    std::vector<ProcessID> found;
    for (const int process : userProcesses())
      if (programOfProcess(process) == resolved && isProcessAlive(process))
        found.push_back(process);
    return found;
  }

  std::unique_ptr<FileManager> fileManagerOf(ProcessID process) override {
    auto environment = environmentOfProcess(process);
    return environment ? makeMacFileManager(std::move(*environment)) : nullptr;
  }

  std::optional<fs::path> programOf(ProcessID process) override {
    return programOfProcess(process);
  }

  ProcessID launch(const Launch& launch) override {
    @autoreleasepool {
      const auto bundle = bundleOf(launch.program);
      if (bundle.empty())
        return startChild(launch);
      const Outcome outcome = openApplication(toFileURL(bundle), configurationOf(launch));
      if (outcome.process == 0)
        throw FileError(failure("start \"" + launch.program.string() + "\"", outcome.trouble),
                        outcome.trouble);
      return outcome.process;
    }
  }

  std::vector<ProcessID> launchTogether(const std::vector<Launch>& launches) override {
    std::vector<ProcessID> processes;
    std::optional<FileError> trouble;
    bool hasStarted = false;
    for (const auto& each : launches) {
      try {
        processes.push_back(launch(each));
        hasStarted = true;
      } catch (const FileError& error) {
        processes.push_back(0);
        trouble = error;
      }
    }
    if (trouble && !hasStarted)
      throw *trouble;
    return processes;
  }

  bool isAlive(ProcessID process) override { return isProcessAlive(process); }

  void terminate(ProcessID process, bool force) override {
    NSRunningApplication* application =
        [NSRunningApplication runningApplicationWithProcessIdentifier:process];
    // A bundle's application quits as if the user had asked for it.
    if (application == nil || force)
      ::kill(process, force ? SIGKILL : SIGTERM);
    else
      [application terminate];
  }

  bool canStart(const std::string& bundleIdentifier) override {
    @autoreleasepool {
      return [NSWorkspace.sharedWorkspace
                 URLForApplicationWithBundleIdentifier:toNSString(bundleIdentifier)] != nil;
    }
  }

  using RunningApplications::perform;
  bool perform(const std::string& bundleIdentifier, const std::string& action,
               const std::optional<std::string>& object) override {
    @autoreleasepool {
      if (action == "quit")
        return [applicationNamed(bundleIdentifier) terminate];
      NSURL* bundle = [NSWorkspace.sharedWorkspace
          URLForApplicationWithBundleIdentifier:toNSString(bundleIdentifier)];
      if (bundle == nil || (action != "open" && !object))
        return false;
      // Opening one that runs asks it to reopen.
      return openApplication(bundle, object ? openingWith(bundleIdentifier, action, *object)
                                            : [NSWorkspaceOpenConfiguration configuration])
                 .process != 0;
    }
  }

private:
  static ProcessID startChild(const Launch& launch) {
    std::vector<std::string> words{launch.program.string()};
    words.insert(words.end(), launch.arguments.begin(), launch.arguments.end());
    return startDetached(words, launch.environment, launch.log);
  }

  fs::path claimFile(const std::string& identifier) const {
    return files_.cachesFolder() / "Tavrin" / (identifier + ".claim");
  }

  const FileManager& files_;
  /// Held until this process ends.
  std::map<std::string, Descriptor> claims_;
};

} // namespace

std::unique_ptr<RunningApplications> makeMacRunningApplications(const FileManager& files) {
  return std::make_unique<MacRunningApplications>(files);
}

} // namespace tavrin

#include "TavrinPlatform/macOS/FanHelper/MacFanHelper.h"

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/FanHelper/FanHelperProtocol.h"

#import <ServiceManagement/ServiceManagement.h>

#include <utility>

namespace tavrin {
namespace {

constexpr const char* unreachable = "Failed to reach the fan helper";
constexpr const char* unsigned_ =
    "Failed to reach the fan helper because this build is not signed by a team";
/// Nothing tells when the user has approved.
constexpr double approvalPoll = 2;

class MacFanHelper final : public FanHelperClient {
public:
  MacFanHelper(RunLoop& runLoop, std::string app, std::string team)
      : runLoop_(runLoop), name_(FanHelperService::name(app)),
        plist_(FanHelperService::plistName(app)),
        hasTeam_(!team.empty() && FanHelperService::clientRequirement(app, team).has_value()) {}
  ~MacFanHelper() override { [connection_ invalidate]; }
  MacFanHelper(const MacFanHelper&) = delete;
  MacFanHelper& operator=(const MacFanHelper&) = delete;

  Status status() override {
    if (!std::exchange(hasLooked_, true))
      look();
    return status_;
  }
  TokenPtr observe(std::function<void()> handler) override {
    return changes_.add(std::move(handler));
  }

  void registerHelper(Reply reply) override {
    if (!hasTeam_)
      return answer(reply, Refusal{unsigned_});
    NSError* error = nil;
    const bool isDone = [service() registerAndReturnError:&error];
    look();
    // Approval still to come is no failure; nor is a helper that is there.
    if (isDone || status_ != Status::notRegistered || error.code == kSMErrorAlreadyRegistered)
      return answer(reply, std::nullopt);
    answer(reply, Refusal{failureText(error)});
  }

  void unregisterHelper(Reply reply) override {
    close();
    const auto alive = alive_.watch();
    RunLoop& runLoop = runLoop_;
    [service() unregisterWithCompletionHandler:^(NSError* error) {
      const bool isGone = error == nil || error.code == kSMErrorJobNotFound;
      const std::string text = isGone ? "" : failureText(error);
      runLoop.post([this, alive, reply, text] {
        if (!alive.expired())
          look();
        reply(text.empty() ? std::nullopt : std::optional(Refusal{text}));
      });
    }];
  }

  void openApprovalSettings() override { [SMAppService openSystemSettingsLoginItems]; }

  void setFull(bool full, Reply reply) override {
    if (!hasTeam_)
      return answer(reply, Refusal{unsigned_});
    RunLoop& runLoop = runLoop_;
    // One of the two blocks runs, on the connection's own queue.
    id<TavrinFanHelper> helper = [connection() remoteObjectProxyWithErrorHandler:^(NSError*) {
      runLoop.post([reply] { reply(Refusal{unreachable}); });
    }];
    [helper setFull:full
              reply:^(NSString* refusal) {
                const std::string text = toText(refusal);
                runLoop.post([reply, text] {
                  reply(text.empty() ? std::nullopt : std::optional(Refusal{text}));
                });
              }];
  }

private:
  SMAppService* service() const {
    return [SMAppService daemonServiceWithPlistName:toNSString(plist_)];
  }

  static std::string failureText(NSError* error) {
    const std::string reason = toText(error.localizedDescription);
    return reason.empty() ? unreachable : std::string(unreachable) + " because " + reason;
  }

  void answer(const Reply& reply, std::optional<Refusal> refusal) {
    runLoop_.post([reply, refusal = std::move(refusal)] { reply(refusal); });
  }

  void look() {
    const SMAppServiceStatus found = service().status;
    const Status status = found == SMAppServiceStatusEnabled            ? Status::ready
                          : found == SMAppServiceStatusRequiresApproval ? Status::needsApproval
                                                                        : Status::notRegistered;
    poll_ = status == Status::needsApproval ? runLoop_.after(approvalPoll, [this] { look(); })
                                            : nullptr;
    if (std::exchange(status_, status) != status)
      changes_.call();
  }

  NSXPCConnection* connection() {
    if (connection_ != nil)
      return connection_;
    connection_ = [[NSXPCConnection alloc] initWithMachServiceName:toNSString(name_)
                                                           options:NSXPCConnectionPrivileged];
    connection_.remoteObjectInterface =
        [NSXPCInterface interfaceWithProtocol:@protocol(TavrinFanHelper)];
    const auto alive = alive_.watch();
    RunLoop& runLoop = runLoop_;
    // An invalidated connection serves no more; the next call makes another one, which may be there
    // by now.
    const int number = ++connections_;
    connection_.invalidationHandler = ^{
      runLoop.post([this, alive, number] {
        if (!alive.expired() && number == connections_)
          connection_ = nil;
      });
    };
    [connection_ activate];
    return connection_;
  }

  void close() {
    [connection_ invalidate];
    connection_ = nil;
  }

  RunLoop& runLoop_;
  std::string name_;
  std::string plist_;
  bool hasTeam_;
  HandlerList changes_;
  Status status_ = Status::notRegistered;
  bool hasLooked_ = false;
  TokenPtr poll_;
  NSXPCConnection* connection_ = nil;
  int connections_ = 0;
  Lifetime alive_;
};

} // namespace

std::unique_ptr<FanHelperClient> makeMacFanHelper(RunLoop& runLoop, std::string appIdentifier,
                                                  std::string teamIdentifier) {
  return std::make_unique<MacFanHelper>(runLoop, std::move(appIdentifier),
                                        std::move(teamIdentifier));
}

} // namespace tavrin

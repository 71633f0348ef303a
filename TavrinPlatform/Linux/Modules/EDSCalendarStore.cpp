#include "TavrinPlatform/Linux/Modules/EDSCalendarStore.h"

#include "TavrinPlatform/Linux/Modules/CalendarInstances.h"
#include "TavrinPlatform/POSIX/LivingToken.h"

#include <algorithm>
#include <iterator>
#include <malloc.h>

namespace tavrin {
namespace {

using Entity = CalendarStore::Entity;

/// "Do not wait for the connected state", which local calendars never tell.
constexpr auto withoutWaiting = static_cast<guint32>(-1);

/// Components whose memory is given back to the system once they are read.
constexpr guint muchToKeep = 200;

constexpr const char* serverNames = "org.gnome.evolution.dataserver";

struct ErrorSlot {
  GError* error = nullptr;
  ~ErrorSlot() { g_clear_error(&error); }
  GError** out() {
    g_clear_error(&error);
    return &error;
  }
};

const char* extensionOf(Entity entity) {
  return entity == Entity::events ? E_SOURCE_EXTENSION_CALENDAR : E_SOURCE_EXTENSION_TASK_LIST;
}

std::string text(const char* value) {
  return value != nullptr ? value : "";
}

std::optional<std::string> colourOf(ESource* source, Entity entity) {
  auto* extension = E_SOURCE_SELECTABLE(e_source_get_extension(source, extensionOf(entity)));
  gchar* colour = e_source_selectable_dup_color(extension);
  const std::optional<std::string> hex =
      colour != nullptr && *colour == '#' ? std::optional(std::string(colour)) : std::nullopt;
  g_free(colour);
  return hex;
}

/// The connection that the library is about to use, which would end the process when the bus goes;
/// it stays the library's as long as somebody holds it.
GOwned<GDBusConnection> connectionThatEndsNobody() {
  GOwned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (bus)
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
  return bus;
}

/// The library ends the process where the descriptions of its own settings are not installed, or
/// XDG_DATA_DIRS does not lead to them.
bool hasSettings() {
  auto* source = g_settings_schema_source_get_default();
  for (const char* name :
       {"org.gnome.Evolution.DefaultSources", "org.gnome.evolution-data-server"}) {
    auto* schema =
        source == nullptr ? nullptr : g_settings_schema_source_lookup(source, name, TRUE);
    if (schema == nullptr)
      return false;
    g_settings_schema_unref(schema);
  }
  return true;
}

} // namespace

EDSCalendarStore::~EDSCalendarStore() {
  if (!thread_)
    return;
  thread_->finish([this] {
    for (auto& [uid, entry] : clients_) {
      g_signal_handlers_disconnect_by_data(entry.client.get(), this);
      if (entry.view)
        g_signal_handlers_disconnect_by_data(entry.view.get(), this);
    }
    clients_.clear();
    if (registry_)
      g_signal_handlers_disconnect_by_data(registry_.get(), this);
    registry_.reset();
    if (bus_)
      g_dbus_connection_signal_unsubscribe(bus_.get(), serverWatch_);
    bus_.reset();
  });
}

template <class Result>
TokenPtr EDSCalendarStore::ask(std::function<Result()> work, std::function<void(Result)> answer) {
  if (!thread_)
    thread_ = std::make_unique<CalendarThread>();
  auto token = std::make_unique<LivingToken>();
  thread_->run([this, asker = token->life(), work = std::move(work), answer = std::move(answer)] {
    if (!asker.expired())
      postAnswer(runLoop_, asker, answer, work());
  });
  return token;
}

CalendarAccess EDSCalendarStore::access(Entity) const {
  return access_;
}

TokenPtr EDSCalendarStore::requestAccess(Entity, std::function<void(CalendarAccess)> answer) {
  return ask<CalendarAccess>(
      [this] {
        access_ = connect() ? CalendarAccess::granted : CalendarAccess::denied;
        return access_.load();
      },
      std::move(answer));
}

TokenPtr EDSCalendarStore::accounts(Entity entity, std::function<void(Accounts)> answer) {
  return ask<Accounts>([this, entity] { return connect() ? readAccounts(entity) : Accounts{}; },
                       std::move(answer));
}

TokenPtr EDSCalendarStore::events(DateInterval range,
                                  const std::optional<std::vector<std::string>>& calendarIDs,
                                  std::function<void(std::vector<CalendarEvent>)> answer) {
  return ask<std::vector<CalendarEvent>>(
      [this, range, calendarIDs] { return readEvents(range, calendarIDs); }, std::move(answer));
}

TokenPtr EDSCalendarStore::reminders(const std::string& listID,
                                     std::function<void(std::vector<Reminder>)> answer) {
  return ask<std::vector<Reminder>>([this, listID] { return readReminders(listID); },
                                    std::move(answer));
}

TokenPtr EDSCalendarStore::setCompleted(const Reminder& reminder, bool isCompleted,
                                        std::function<void(bool)> answer) {
  return ask<bool>([this, reminder, isCompleted] { return writeCompleted(reminder, isCompleted); },
                   std::move(answer));
}

void EDSCalendarStore::openApplication(Entity) {
  GAppInfo* application = g_app_info_get_default_for_type("text/calendar", FALSE);
  if (application == nullptr)
    return;
  ErrorSlot error;
  g_app_info_launch(application, nullptr, nullptr, error.out());
  g_object_unref(application);
}

TokenPtr EDSCalendarStore::observeChanges(std::function<void()> handler) {
  struct Observation final : Token {
    ~Observation() override { handlers->erase(id); }
    std::shared_ptr<Handlers> handlers;
    int id = 0;
  };
  auto token = std::make_unique<Observation>();
  token->handlers = handlers_;
  token->id = nextHandler_++;
  handlers_->emplace(token->id, std::make_shared<std::function<void()>>(std::move(handler)));
  return token;
}

void EDSCalendarStore::tellChanged() {
  runLoop_.post([weak = std::weak_ptr(handlers_)] {
    const auto handlers = weak.lock();
    if (!handlers)
      return;
    const Handlers current = *handlers;
    for (const auto& [id, handler] : current)
      if (handlers->contains(id))
        (*handler)();
  });
}

void EDSCalendarStore::changed(gpointer, gpointer, gpointer store) {
  static_cast<EDSCalendarStore*>(store)->tellChanged();
}

void EDSCalendarStore::died(ECalClient* client, gpointer data) {
  auto& store = *static_cast<EDSCalendarStore*>(data);
  g_signal_handlers_disconnect_by_data(client, data);
  std::erase_if(store.clients_, [&](auto& entry) {
    if (entry.second.client.get() != client)
      return false;
    if (entry.second.view)
      g_signal_handlers_disconnect_by_data(entry.second.view.get(), data);
    return true;
  });
  store.tellChanged();
}

void EDSCalendarStore::nameChanged(GDBusConnection*, const char*, const char*, const char*,
                                   const char*, GVariant* words, gpointer store) {
  const char* name = nullptr;
  const char* owner = nullptr;
  g_variant_get(words, "(&s&s&s)", &name, nullptr, &owner);
  // Each open calendar has a name, too, which says nothing.
  const std::string service = std::string(name).substr(std::string(serverNames).size());
  if (*owner != '\0' && (service.starts_with(".Sources") || service.starts_with(".Calendar")))
    static_cast<EDSCalendarStore*>(store)->tellChanged();
}

/// A server that was away when somebody asked is told of as a change when it comes.
void EDSCalendarStore::watchServer() {
  if (bus_)
    return;
  bus_ = connectionThatEndsNobody();
  if (bus_)
    serverWatch_ = g_dbus_connection_signal_subscribe(
        bus_.get(), "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
        "/org/freedesktop/DBus", serverNames, G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE, nameChanged,
        this, nullptr);
}

bool EDSCalendarStore::connect() {
  if (registry_)
    return true;
  if (!hasSettings())
    return false;
  watchServer();
  ErrorSlot error;
  registry_.reset(e_source_registry_new_sync(thread_->cancellable(), error.out()));
  // Without a server the library makes a registry all the same; a server has sources of its own.
  GList* sources = registry_ ? e_source_registry_list_sources(registry_.get(), nullptr) : nullptr;
  const bool hasServer = sources != nullptr;
  g_list_free_full(sources, g_object_unref);
  if (!hasServer) {
    registry_.reset();
    return false;
  }
  for (const char* signal :
       {"source-added", "source-removed", "source-changed", "source-enabled", "source-disabled"})
    g_signal_connect(registry_.get(), signal, G_CALLBACK(changed), this);
  return true;
}

CalendarStore::Accounts EDSCalendarStore::readAccounts(Entity entity) const {
  Accounts result;
  GList* sources = e_source_registry_list_sources(registry_.get(), extensionOf(entity));
  for (GList* link = sources; link != nullptr; link = link->next) {
    auto* source = E_SOURCE(link->data);
    if (!e_source_registry_check_enabled(registry_.get(), source))
      continue;
    const std::string accountID = text(e_source_get_parent(source));
    const GOwned<ESource> parent(e_source_registry_ref_source(registry_.get(), accountID.c_str()));
    const std::string accountName = parent ? text(e_source_get_display_name(parent.get())) : "";
    auto account = std::find_if(result.accounts.begin(), result.accounts.end(),
                                [&](const auto& known) { return known.id == accountID; });
    if (account == result.accounts.end())
      account = result.accounts.insert(account, {accountID, accountName, {}});
    account->calendars.push_back({text(e_source_get_uid(source)),
                                  text(e_source_get_display_name(source)), accountID, accountName,
                                  colourOf(source, entity)});
  }
  g_list_free_full(sources, g_object_unref);
  const GOwned<ESource> chosen(entity == Entity::events
                                   ? e_source_registry_ref_default_calendar(registry_.get())
                                   : e_source_registry_ref_default_task_list(registry_.get()));
  if (chosen)
    result.defaultID = text(e_source_get_uid(chosen.get()));
  return result;
}

ECalClient* EDSCalendarStore::open(const std::string& uid, Entity entity) {
  if (const auto found = clients_.find(uid); found != clients_.end())
    return found->second.client.get();
  const GOwned<ESource> source(e_source_registry_ref_source(registry_.get(), uid.c_str()));
  if (!source || !e_source_has_extension(source.get(), extensionOf(entity)))
    return nullptr;
  ErrorSlot error;
  EClient* client = e_cal_client_connect_sync(
      source.get(),
      entity == Entity::events ? E_CAL_CLIENT_SOURCE_TYPE_EVENTS : E_CAL_CLIENT_SOURCE_TYPE_TASKS,
      withoutWaiting, thread_->cancellable(), error.out());
  if (client == nullptr)
    return nullptr;
  auto& entry = clients_[uid];
  entry.client.reset(E_CAL_CLIENT(client));
  if (auto* zone = e_cal_util_get_system_timezone())
    e_cal_client_set_default_timezone(entry.client.get(), zone);
  g_signal_connect(client, "backend-died", G_CALLBACK(died), this);
  watch(entry);
  return entry.client.get();
}

void EDSCalendarStore::watch(Client& entry) {
  ErrorSlot error;
  ECalClientView* view = nullptr;
  if (!e_cal_client_get_view_sync(entry.client.get(), "#t", &view, thread_->cancellable(),
                                  error.out()))
    return;
  entry.view.reset(view);
  // The changes alone: what is there already is read by range.
  e_cal_client_view_set_flags(view, E_CAL_CLIENT_VIEW_FLAGS_NONE, error.out());
  for (const char* signal : {"objects-added", "objects-modified", "objects-removed"})
    g_signal_connect(view, signal, G_CALLBACK(changed), this);
  e_cal_client_view_start(view, error.out());
}

std::vector<CalendarEvent>
EDSCalendarStore::readEvents(DateInterval range,
                             const std::optional<std::vector<std::string>>& chosen) {
  std::vector<CalendarEvent> events;
  if (!connect())
    return events;
  for (const auto& choice : choices(readAccounts(Entity::events).accounts))
    if (!chosen || std::find(chosen->begin(), chosen->end(), choice.id) != chosen->end())
      readEvents(choice.id, range, events);
  std::stable_sort(events.begin(), events.end(), [](const auto& first, const auto& second) {
    return first.start < second.start;
  });
  return events;
}

void EDSCalendarStore::readEvents(const std::string& uid, DateInterval range,
                                  std::vector<CalendarEvent>& events) {
  ECalClient* client = open(uid, Entity::events);
  if (client == nullptr)
    return;
  GSList* components = nullptr;
  for (const auto& query : queriesFor(range)) {
    ErrorSlot error;
    GSList* found = nullptr;
    e_cal_client_get_object_list_sync(client, query.c_str(), &found, thread_->cancellable(),
                                      error.out());
    components = g_slist_concat(found, components);
  }
  auto instances = instancesOf(components, range,
                               colourOf(e_client_get_source(E_CLIENT(client)), Entity::events),
                               {e_cal_client_tzlookup_cb, client,
                                e_cal_client_get_default_timezone(client), thread_->cancellable()});
  const bool wasMuch = g_slist_length(components) > muchToKeep;
  g_slist_free_full(components, g_object_unref);
  // The heap of this thread would stay as large as the calendar for good.
  if (wasMuch)
    ::malloc_trim(0);
  std::move(instances.begin(), instances.end(), std::back_inserter(events));
}

std::vector<Reminder> EDSCalendarStore::readReminders(const std::string& listID) {
  std::vector<Reminder> reminders;
  ECalClient* client = connect() ? open(listID, Entity::reminders) : nullptr;
  if (client == nullptr)
    return reminders;
  ErrorSlot error;
  GSList* components = nullptr;
  e_cal_client_get_object_list_sync(client, "#t", &components, thread_->cancellable(), error.out());
  for (GSList* link = components; link != nullptr; link = link->next)
    if (auto reminder = reminderFrom(I_CAL_COMPONENT(link->data), listID))
      reminders.push_back(std::move(*reminder));
  g_slist_free_full(components, g_object_unref);
  return reminders;
}

bool EDSCalendarStore::writeCompleted(const Reminder& reminder, bool isCompleted) {
  ECalClient* client = connect() ? open(reminder.listID, Entity::reminders) : nullptr;
  if (client == nullptr)
    return false;
  ErrorSlot error;
  ICalComponent* found = nullptr;
  if (!e_cal_client_get_object_sync(client, reminder.id.c_str(), nullptr, &found,
                                    thread_->cancellable(), error.out()))
    return false;
  const GOwned<ICalComponent> component(found);
  e_cal_util_component_remove_property_by_kind(found, I_CAL_COMPLETED_PROPERTY, TRUE);
  e_cal_util_component_remove_property_by_kind(found, I_CAL_PERCENTCOMPLETE_PROPERTY, TRUE);
  i_cal_component_set_status(found,
                             isCompleted ? I_CAL_STATUS_COMPLETED : I_CAL_STATUS_NEEDSACTION);
  i_cal_component_take_property(found, i_cal_property_new_percentcomplete(isCompleted ? 100 : 0));
  if (isCompleted) {
    const GOwned<ICalTime> now(i_cal_time_new_current_with_zone(i_cal_timezone_get_utc_timezone()));
    i_cal_component_take_property(found, i_cal_property_new_completed(now.get()));
  }
  return e_cal_client_modify_object_sync(client, found, E_CAL_OBJ_MOD_THIS,
                                         E_CAL_OPERATION_FLAG_NONE, thread_->cancellable(),
                                         error.out());
}

} // namespace tavrin

extern "C" __attribute__((visibility("default"))) tavrin::CalendarStore*
tavrinMakeCalendarStore(tavrin::RunLoop& runLoop) {
  return new tavrin::EDSCalendarStore(runLoop);
}

#include "TavrinPlatform/Linux/Desktop/SecretServiceKeychain.h"

#include "TavrinPlatform/Files/SharedLibrary.h"

#include <cstring>
// For the session's path alone, which is used where the library has it.
#define SECRET_API_SUBJECT_TO_CHANGE
#include <libsecret/secret.h>
#include <memory>

namespace tavrin {

namespace {

/// What of the library is used; nothing of it is linked.
struct Library {
  decltype(&secret_service_open_sync) openService = nullptr;
  decltype(&secret_service_get_type) serviceType = nullptr;
  decltype(&secret_service_get_session_dbus_path) sessionPath = nullptr;
  decltype(&secret_service_search_sync) search = nullptr;
  decltype(&secret_item_get_locked) isLocked = nullptr;
  decltype(&secret_item_load_secret_sync) loadSecret = nullptr;
  decltype(&secret_item_get_secret) secretOf = nullptr;
  decltype(&secret_value_get) bytesOf = nullptr;
  decltype(&secret_value_new) makeValue = nullptr;
  decltype(&secret_value_unref) freeValue = nullptr;
  decltype(&secret_collection_for_alias_sync) collection = nullptr;
  decltype(&secret_collection_get_locked) isCollectionLocked = nullptr;
  decltype(&secret_service_store_sync) store = nullptr;
  decltype(&g_dbus_proxy_get_connection) connectionOf = nullptr;
  decltype(&g_dbus_connection_call) call = nullptr;
  decltype(&g_object_unref) unref = nullptr;
  decltype(&g_list_free_full) freeList = nullptr;
  decltype(&g_error_free) freeError = nullptr;
  decltype(&g_hash_table_new) makeTable = nullptr;
  decltype(&g_hash_table_insert) insert = nullptr;
  decltype(&g_hash_table_unref) freeTable = nullptr;
  decltype(&g_str_hash) hash = nullptr;
  decltype(&g_str_equal) equal = nullptr;

  bool load() {
    const SharedLibrary library{"libsecret-1.so.0"};
    library.find(sessionPath, "secret_service_get_session_dbus_path");
    return library.find(openService, "secret_service_open_sync") &&
           library.find(serviceType, "secret_service_get_type") &&
           library.find(connectionOf, "g_dbus_proxy_get_connection") &&
           library.find(call, "g_dbus_connection_call") &&
           library.find(search, "secret_service_search_sync") &&
           library.find(isLocked, "secret_item_get_locked") &&
           library.find(loadSecret, "secret_item_load_secret_sync") &&
           library.find(secretOf, "secret_item_get_secret") &&
           library.find(bytesOf, "secret_value_get") &&
           library.find(makeValue, "secret_value_new") &&
           library.find(freeValue, "secret_value_unref") &&
           library.find(collection, "secret_collection_for_alias_sync") &&
           library.find(isCollectionLocked, "secret_collection_get_locked") &&
           library.find(store, "secret_service_store_sync") &&
           library.find(unref, "g_object_unref") && library.find(freeList, "g_list_free_full") &&
           library.find(freeError, "g_error_free") && library.find(makeTable, "g_hash_table_new") &&
           library.find(insert, "g_hash_table_insert") &&
           library.find(freeTable, "g_hash_table_unref") && library.find(hash, "g_str_hash") &&
           library.find(equal, "g_str_equal");
  }
};

const Library& library() {
  static Library loaded;
  static const bool isLoaded = loaded.load();
  if (!isLoaded)
    throw KeychainError(Keychain::notAvailable);
  return loaded;
}

const SecretSchema& schema() {
  static const SecretSchema form = [] {
    SecretSchema schema{};
    schema.name = "dev.quellby.tavrin.Key";
    schema.flags = SECRET_SCHEMA_NONE;
    schema.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
    schema.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
    return schema;
  }();
  return form;
}

struct FreeObject {
  void operator()(void* object) const { library().unref(object); }
};
template <class Object> using ObjectPtr = std::unique_ptr<Object, FreeObject>;

struct FreeList {
  void operator()(GList* list) const { library().freeList(list, library().unref); }
};
struct FreeTable {
  void operator()(GHashTable* table) const { library().freeTable(table); }
};
struct FreeValue {
  void operator()(SecretValue* value) const { library().freeValue(value); }
};

/// The attributes refer to the texts, which must outlive them.
std::unique_ptr<GHashTable, FreeTable> attributes(const std::string& service,
                                                  const std::string& account) {
  const Library& lib = library();
  std::unique_ptr<GHashTable, FreeTable> table(lib.makeTable(lib.hash, lib.equal));
  const auto put = [&](const char* key, const std::string& value) {
    lib.insert(table.get(), const_cast<char*>(key), const_cast<char*>(value.c_str()));
  };
  put("service", service);
  put("account", account);
  return table;
}

/// Throws where the call left an error.
void check(GError* error) {
  if (error == nullptr)
    return;
  const bool isLocked = std::strstr(error->message, "locked") != nullptr;
  library().freeError(error);
  throw KeychainError(isLocked ? Keychain::interactionNotAllowed : Keychain::notAvailable);
}

/// A session with the keyring, closed there without waiting when the object goes.
struct CloseService {
  void operator()(SecretService* service) const {
    const Library& lib = library();
    auto* proxy = reinterpret_cast<GDBusProxy*>(service);
    if (const char* session = lib.sessionPath != nullptr ? lib.sessionPath(service) : nullptr)
      lib.call(lib.connectionOf(proxy), "org.freedesktop.secrets", session,
               "org.freedesktop.Secret.Session", "Close", nullptr, nullptr,
               G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
    lib.unref(service);
  }
};

/// A new one for each call: a shared one stays with the daemon that it was opened with, and with
/// what it read of it, after another has taken that daemon's place.
std::unique_ptr<SecretService, CloseService> connect() {
  const Library& lib = library();
  GError* error = nullptr;
  std::unique_ptr<SecretService, CloseService> service(
      lib.openService(lib.serviceType(), nullptr, SECRET_SERVICE_OPEN_SESSION, nullptr, &error));
  check(error);
  return service;
}

} // namespace

std::optional<Data> SecretServiceKeychain::find(const std::string& service,
                                                const std::string& account) {
  const Library& lib = library();
  const auto keyring = connect();
  const auto wanted = attributes(service, account);
  GError* error = nullptr;
  // Without SECRET_SEARCH_UNLOCK nobody is asked for a password.
  const std::unique_ptr<GList, FreeList> found(
      lib.search(keyring.get(), &schema(), wanted.get(), SECRET_SEARCH_NONE, nullptr, &error));
  check(error);
  if (!found)
    return std::nullopt;
  auto* item = static_cast<SecretItem*>(found->data);
  if (lib.isLocked(item) != 0)
    throw KeychainError(interactionNotAllowed);
  lib.loadSecret(item, nullptr, &error);
  check(error);
  const std::unique_ptr<SecretValue, FreeValue> value(lib.secretOf(item));
  if (!value)
    return std::nullopt;
  gsize length = 0;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(lib.bytesOf(value.get(), &length));
  return Data{{bytes, bytes + length}};
}

void SecretServiceKeychain::add(const std::string& service, const std::string& account,
                                const Data& secret) {
  const Library& lib = library();
  const auto keyring = connect();
  GError* error = nullptr;
  const ObjectPtr<SecretCollection> collection(lib.collection(
      keyring.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, nullptr, &error));
  check(error);
  // Storing into either of these would open a dialog and wait for it.
  if (!collection)
    throw KeychainError(notAvailable);
  if (lib.isCollectionLocked(collection.get()) != 0)
    throw KeychainError(interactionNotAllowed);
  const auto identity = attributes(service, account);
  const std::unique_ptr<SecretValue, FreeValue> value(
      lib.makeValue(reinterpret_cast<const char*>(secret.bytes.data()),
                    static_cast<gssize>(secret.bytes.size()), "application/octet-stream"));
  const std::string label = "Tavrin: " + service;
  lib.store(keyring.get(), &schema(), identity.get(), SECRET_COLLECTION_DEFAULT, label.c_str(),
            value.get(), nullptr, &error);
  check(error);
}

} // namespace tavrin

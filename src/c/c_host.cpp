// The host services of the C interface: paths, copy names, database handles and files that the client provides.

#include "c/c_support.h"
#include "platform/host.h"
#include "tarn/platform/database.h"

using namespace tarn;

namespace {

void check(int32_t status, const char* operation, const std::string& path) {
  if (status != 0)
    fail(ErrorNumber::DeviceError,
         "The host program's file service cannot " + std::string(operation) + " " + path + ".");
}

class ClientFile final : public File {
 public:
  ClientFile(const tarn_files& files, void* file, std::string path)
      : files_(files), file_(file), path_(std::move(path)) {}
  ClientFile(const ClientFile&) = delete;
  ClientFile& operator=(const ClientFile&) = delete;
  ~ClientFile() override { files_.close(files_.context, file_); }

  size_t read(uint64_t offset, std::span<std::byte> into) override {
    const int64_t got = files_.read(files_.context, file_, offset, into.data(), into.size());
    check(got < 0 || static_cast<uint64_t>(got) > into.size(), "read", path_);
    return static_cast<size_t>(got);
  }
  void write(uint64_t offset, std::span<const std::byte> bytes) override {
    check(files_.write(files_.context, file_, offset, bytes.data(), bytes.size()), "write", path_);
  }
  uint64_t size() override {
    const int64_t bytes = files_.size(files_.context, file_);
    check(bytes < 0, "examine", path_);
    return static_cast<uint64_t>(bytes);
  }
  void truncate(uint64_t size) override { check(files_.truncate(files_.context, file_, size), "shorten", path_); }
  void sync() override { check(files_.sync(files_.context, file_), "store", path_); }

 private:
  const tarn_files& files_;
  void* file_;
  std::string path_;
};

class ClientFiles final : public FileService {
 public:
  tarn_files files{};

  bool exists(const std::string& path) override { return files.exists(files.context, path.c_str()) != 0; }
  std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
    void* file = nullptr;
    check(files.open(files.context, path.c_str(), static_cast<int32_t>(mode), &file), "open", path);
    if (file) return std::make_unique<ClientFile>(files, file, path);
    check(mode == OpenMode::Create, "create", path);
    return nullptr;
  }
  void remove(const std::string& path) override { check(files.remove(files.context, path.c_str()), "remove", path); }
  void rename(const std::string& from, const std::string& to) override {
    check(files.rename(files.context, from.c_str(), to.c_str()), "rename", from);
  }
  void sync_folder(const std::string& folder) override {
    check(files.sync_folder(files.context, folder.c_str()), "store the folder", folder);
  }
};

using TextService = std::function<std::string(const std::string&)>;

TextService text_service(const char* (*service)(void*, const char*), void* context, const char* name,
                         const TextService& own) {
  if (!service) return own;
  return [service, context, name](const std::string& text) -> std::string {
    const char* answer = service(context, text.c_str());
    if (!answer)
      fail(ErrorNumber::InvalidCall, "The host program's " + std::string(name) + " has no answer for " + text + ".");
    return answer;
  };
}

Ptr<Database> database_from(const tarn_host& services, const std::string& path) {
  HandleSlot* slot = slot_of(services.database(services.context, path.c_str()));
  auto database = slot ? std::dynamic_pointer_cast<Database>(slot->object) : nullptr;
  if (!database)
    fail(ErrorNumber::InvalidCall, "The host program's database service gave no database handle for " + path + ".");
  return database;
}

}  // namespace

tarn_status tarn_set_host(const tarn_host* services) {
  return guarded(thread_error, [services] {
    const Host own = standard_host();
    const tarn_host given = services ? *services : tarn_host{};
    Host& now = host();
    now.normalise_path = text_service(given.normalise_path, given.context, "normalise_path", own.normalise_path);
    now.directory_form = text_service(given.directory_form, given.context, "directory_form", own.directory_form);
    now.copy_name = text_service(given.copy_name, given.context, "copy_name", own.copy_name);
    now.database = own.database;
    if (given.database) now.database = [given](const std::string& path) { return database_from(given, path); };
  });
}

tarn_status tarn_set_files(const tarn_files* files) {
  return guarded(thread_error, [files] {
    thread_local ClientFiles client_files;
    if (!files) {
      host().files = &system_files();
      return;
    }
    const auto& f = *files;
    if (!(f.exists && f.open && f.close && f.read && f.write && f.size && f.truncate && f.sync && f.remove &&
          f.rename && f.sync_folder))
      bad_argument("A file service needs all of its functions.");
    client_files.files = f;
    host().files = &client_files;
  });
}

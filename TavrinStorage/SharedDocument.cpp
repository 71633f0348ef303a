#include "TavrinStorage/SharedDocument.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/DocumentLock.h"

namespace tavrin {

void changeSharedFile(const std::filesystem::path& file,
                      const std::function<bool(const FileStamp& seen)>& attempt) {
  // Each attempt that fails is a change of another process that succeeded.
  constexpr int mostAttempts = 50;
  const DocumentLock lock(file);
  for (int number = 0; number < mostAttempts && !lock.isContended(); ++number)
    if (attempt(fileStamp(file)))
      return;
  const auto reason = translated("others keep changing it");
  throw FileError(failure(translated("change {file}", {{"file", file.string()}}), reason), reason);
}

} // namespace tavrin

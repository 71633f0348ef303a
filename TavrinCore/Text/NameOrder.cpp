#include "TavrinCore/Text/NameOrder.h"

#include "TavrinCore/Text/SystemLocale.h"

#include <unicode/coll.h>
#include <unicode/stringpiece.h>

namespace tavrin {

struct NameOrder::Rules {
  std::unique_ptr<icu::Collator> collator;
};

NameOrder::NameOrder() : NameOrder(systemLocaleID("LC_COLLATE")) {}

NameOrder::NameOrder(const std::string& locale) : rules_(std::make_unique<Rules>()) {
  // ICU's own order of the C locale puts all capitals first.
  const bool isC = locale.empty() || locale == "c" || locale.starts_with("en_US_POSIX");
  UErrorCode status = U_ZERO_ERROR;
  rules_->collator.reset(icu::Collator::createInstance(
      isC ? icu::Locale::getRoot() : icu::Locale::createFromName(locale.c_str()), status));
  if (U_FAILURE(status))
    rules_->collator.reset();
  else
    rules_->collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
}

NameOrder::~NameOrder() = default;

bool NameOrder::operator()(std::string_view a, std::string_view b) const {
  if (!rules_->collator)
    return a < b;
  UErrorCode status = U_ZERO_ERROR;
  const auto piece = [](std::string_view text) {
    return icu::StringPiece(text.data(), static_cast<int32_t>(text.size()));
  };
  return rules_->collator->compareUTF8(piece(a), piece(b), status) == UCOL_LESS;
}

} // namespace tavrin

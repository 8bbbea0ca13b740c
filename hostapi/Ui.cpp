#include "hostapi/Ui.h"

#include "core/Error.h"

#include <vector>

namespace kordel::hostapi {

namespace {
std::shared_ptr<Ui> &installed() {
  static std::shared_ptr<Ui> current;
  return current;
}
} // namespace

namespace MsgBox {

std::vector<int> buttons(int flags) {
  switch (flags & 7) {
  case OkCancel: return {Ok, Cancel};
  case AbortRetryIgnore: return {Abort, Retry, Ignore};
  case YesNoCancel: return {Yes, No, Cancel};
  case YesNo: return {Yes, No};
  case RetryCancel: return {Retry, Cancel};
  default: return {Ok};
  }
}

int defaultAnswer(int flags) {
  const std::vector<int> all = buttons(flags);
  std::size_t index = 0;
  if (flags & DefaultButton3)
    index = 2;
  else if (flags & DefaultButton2)
    index = 1;
  return all[index < all.size() ? index : 0];
}

} // namespace MsgBox

Ui::~Ui() = default;

Ui &ui() {
  if (!installed())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Ui"), QStringLiteral("No user interface is installed"));
  return *installed();
}

void installUi(std::shared_ptr<Ui> ui) { installed() = std::move(ui); }

bool hasUi() { return installed() != nullptr; }

} // namespace kordel::hostapi

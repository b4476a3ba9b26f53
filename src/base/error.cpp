#include "tarn/base/error.h"

namespace tarn {

void fail(ErrorNumber number, const std::string& description) { throw Error(number, description); }

}  // namespace tarn

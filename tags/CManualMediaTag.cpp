#include "tags/CManualMediaTag.h"

namespace tbx {

CManualMediaTag::CManualMediaTag(fenn::CURI file) : m_file(std::move(file)) {}

}  // namespace tbx

#include "components/gleanseek/Gleanseek.h"

namespace gleanseek {

std::shared_ptr<const DocumentTextSource> DefaultDocumentTextSource()
{
    return nullptr;
}

} // namespace gleanseek

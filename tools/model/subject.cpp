#include "tools/model/subject.h"

#include "tools/model/axes.h"
#include "tools/model/content.h"

namespace model {

CheckedModel::CheckedModel(Database& database)
    : content_(read_content(database)),
      origin_(read_origin(database)),
      subject_{.content = content_,
               .source = origin_.source,
               .steps = static_cast<int>(origin_.steps.size()),
               .axes = axes_of(origin_.systems, content_.vertices)} {}

}  // namespace model

#include "tools/orv/remarks.h"

#include <iostream>

#include "com/bstr.h"
#include "com/error.h"
#include "tools/content/shown_text.h"
#include "tools/text/utf8.h"

namespace orv {

void print_remarks(const std::string& heading, const com::Ptr<IDeck>& deck) {
  com::Ptr<IRemarks> remarks;
  com::check(deck->get_Remarks(remarks.put()), deck);
  long count = 0;
  com::check(remarks->get_Count(&count), remarks);
  if (count > 0) std::cout << heading << '\n';
  for (long i = 0; i < count; ++i) {
    com::Ptr<IRemark> remark;
    com::check(remarks->Item(i, remark.put()), remarks);
    com::Bstr words;
    com::check(remark->get_Text(words.put()), remark);
    std::cout << "  " << content::without_controls(text::to_utf8(words.view())) << '\n';
  }
}

}  // namespace orv

#include "tools/automation/picture.h"

#include <algorithm>
#include <utility>

#include "tools/automation/answer.h"
#include "tools/automation/remarks.h"
#include "tools/text/file.h"

namespace automation {
namespace {

constexpr long kAllSteps = -1;

std::string utf8(BSTR text) { return text::to_utf8(com::Bstr::view(text)); }

std::vector<std::string> split(const std::string& text) {
  constexpr const char* kBlanks = " \t";
  std::vector<std::string> names;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(';', begin), text.size());
    const std::string name = text.substr(begin, end - begin);
    const std::size_t first = name.find_first_not_of(kBlanks);
    if (first != std::string::npos) {
      names.push_back(name.substr(first, name.find_last_not_of(kBlanks) + 1 - first));
    }
    begin = end + 1;
  }
  return names;
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : "; ") + name;
  return text;
}

}  // namespace

template <class Change>
HRESULT Picture::change(Change change) {
  return com::boundary([&] {
    views::Options changed = options_;
    change(changed);
    views::require_valid(changed);
    options_ = std::move(changed);
  });
}

STDMETHODIMP Picture::Draw(IDispatch* pModelDatabase, BSTR bstrPath) {
  return com::boundary([&] {
    const std::string path = text::full_path(utf8(bstrPath));
    model::Database database(pModelDatabase);
    notes_ = views::draw(database, options_, path);
  });
}

STDMETHODIMP Picture::get_Deck(BSTR* pVal) { return answer(pVal, options_.deck); }
STDMETHODIMP Picture::put_Deck(BSTR newVal) {
  return change([&](views::Options& options) { options.deck = utf8(newVal); });
}

STDMETHODIMP Picture::get_View(BSTR* pVal) { return answer(pVal, options_.view); }
STDMETHODIMP Picture::put_View(BSTR newVal) {
  return change([&](views::Options& options) { options.view = utf8(newVal); });
}

STDMETHODIMP Picture::get_Scale(double* pVal) {
  *pVal = options_.scale;
  return S_OK;
}
STDMETHODIMP Picture::put_Scale(double newVal) {
  return change([&](views::Options& options) { options.scale = newVal; });
}

STDMETHODIMP Picture::get_Labels(BSTR* pVal) { return answer(pVal, options_.labels); }
STDMETHODIMP Picture::put_Labels(BSTR newVal) {
  return change([&](views::Options& options) { options.labels = utf8(newVal); });
}

STDMETHODIMP Picture::get_Sets(BSTR* pVal) { return answer(pVal, joined(options_.sets)); }
STDMETHODIMP Picture::put_Sets(BSTR newVal) {
  return change([&](views::Options& options) { options.sets = split(utf8(newVal)); });
}

STDMETHODIMP Picture::get_Kinds(BSTR* pVal) { return answer(pVal, joined(options_.kinds)); }
STDMETHODIMP Picture::put_Kinds(BSTR newVal) {
  return change([&](views::Options& options) { options.kinds = split(utf8(newVal)); });
}

STDMETHODIMP Picture::get_Step(long* pVal) {
  *pVal = options_.step.value_or(kAllSteps);
  return S_OK;
}
STDMETHODIMP Picture::put_Step(long newVal) {
  return change([&](views::Options& options) {
    if (newVal == kAllSteps) {
      options.step.reset();
    } else {
      options.step = newVal;
    }
  });
}

STDMETHODIMP Picture::get_Title(BSTR* pVal) { return answer(pVal, options_.title); }
STDMETHODIMP Picture::put_Title(BSTR newVal) {
  return change([&](views::Options& options) { options.title = utf8(newVal); });
}

STDMETHODIMP Picture::get_Remarks(IRemarks** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    std::vector<RemarkText> texts;
    for (const std::string& note : notes_) texts.push_back({.file = {}, .reason = note});
    *pVal = make_remarks(texts).detach();
  });
}

}  // namespace automation

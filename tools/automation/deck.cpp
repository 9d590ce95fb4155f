#include "tools/automation/deck.h"

#include "tools/automation/answer.h"
#include "tools/automation/deck_origin.h"
#include "tools/automation/set_sources.h"
#include "tools/deck/export.h"
#include "tools/deck/import.h"
#include "tools/model/content.h"
#include "tools/text/failure.h"
#include "tools/text/file.h"

namespace automation {
namespace {

std::vector<RemarkText> texts_of(const std::vector<deck::Remark>& remarks) {
  std::vector<RemarkText> texts;
  for (const deck::Remark& remark : remarks) {
    texts.push_back(
        {.file = remark.file, .line = static_cast<long>(remark.line), .reason = remark.reason});
  }
  return texts;
}

std::vector<RemarkText> texts_of(const deck::Exported& exported) {
  std::vector<RemarkText> texts;
  for (const std::string& remark : exported.remarks)
    texts.push_back({.file = {}, .reason = remark});
  for (const deck::Rounded& rounded : exported.rounded) {
    texts.push_back({.file = {},
                     .reason = rounded.record + " is written as " + rounded.text +
                               ", since the solver reads 20 characters of a number."});
  }
  return texts;
}

/// All that was refused, as one text; of many the first ones.
std::string refusal_of(const std::vector<std::string>& refusals) {
  constexpr std::size_t kShown = 10;
  std::string text = "The deck was not written.";
  for (std::size_t i = 0; i < refusals.size() && i < kShown; ++i) text += "\n" + refusals[i];
  if (refusals.size() > kShown) {
    text += "\nAnd " + std::to_string(refusals.size() - kShown) + " more.";
  }
  return text;
}

bool is_true(const VARIANT& argument) {
  if (com::is_omitted(argument)) return false;
  return com::Variant(argument).as(VT_BOOL).get().boolVal != VARIANT_FALSE;
}

}  // namespace

const deck::Deck& Deck::deck() const {
  if (!deck_) {
    text::fail(text::kIllegalOperation, "No deck was read. Call Read with the path of one first.");
  }
  return *deck_;
}

STDMETHODIMP Deck::Read(BSTR bstrPath) {
  return com::boundary([&] {
    // Sentences name the file as the user does.
    const std::string given = text::to_utf8(com::Bstr::view(bstrPath));
    const std::string path = text::full_path(given);
    try {
      deck_ = deck::read(given);
    } catch (const deck::Error& error) {
      text::fail(text::kCannotReadFile, error.what());
    }
    path_ = path;
    remarks_ = texts_of(deck_->remarks);
  });
}

STDMETHODIMP Deck::CopyTo(IDispatch* pModelDatabase) {
  return com::boundary([&] {
    const deck::Deck& source = deck();
    model::Database database(pModelDatabase);
    const model::NoTimeLimit patient(database);
    model::require_empty(database);
    const deck::Imported imported = deck::import(source);
    model::Transaction transaction(database);
    model::write_content(database, imported.content);
    model::write_origin(database, origin_of(source, imported.source, path_));
    database.name_step(text::to_utf8(text::path_of(path_).filename().wstring()) + " imported");
    transaction.commit();
    remarks_ = texts_of(imported.remarks);
  });
}

/// Neither the deck nor a file that it includes may be written over.
void Deck::require_not_a_part(const std::string& path) const {
  const std::filesystem::path source = text::path_of(path_);
  for (const auto& file : deck().files) {
    const bool is_first = file == deck().files.front();
    const std::filesystem::path part =
        is_first ? source : source.parent_path() / text::path_of(file->path);
    if (!text::is_same_file(text::path_of(path), part)) continue;
    text::fail(text::kIllegalOperation,
               "\"" + path +
                   "\" is the deck that was read, or a file that it "
                   "includes. Write to another path, so that both remain.");
  }
}

STDMETHODIMP Deck::Write(IDispatch* pModelDatabase, BSTR bstrPath, VARIANT vOtherDeck) {
  return com::boundary([&] {
    const std::string path = text::full_path(text::to_utf8(com::Bstr::view(bstrPath)));
    require_not_a_part(path);
    model::Database database(pModelDatabase);
    const model::NoTimeLimit patient(database);
    const deck::Exported exported =
        deck::write(deck(), model::read_content(database), model::read_origin(database).source,
                    {.other_deck = is_true(vOtherDeck)});
    if (!exported.refusals.empty()) {
      text::fail(text::kIllegalOperation, refusal_of(exported.refusals));
    }
    text::NewFile file(path);
    file.write(exported.text);
    file.complete();
    remarks_ = texts_of(exported);
  });
}

STDMETHODIMP Deck::get_Remarks(IRemarks** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    *pVal = make_remarks(remarks_).detach();
  });
}

STDMETHODIMP Deck::Sources(IDispatch* pModelDatabase, ISetSources** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    model::Database database(pModelDatabase);
    *pVal = set_sources_of(database).detach();
  });
}

STDMETHODIMP Deck::get_Path(BSTR* pVal) { return answer(pVal, path_); }

STDMETHODIMP Deck::get_Checksum(BSTR* pVal) {
  return com::boundary(
      [&] { *pVal = com::Bstr(text::to_wide(deck_ ? deck_->checksum() : "")).detach(); });
}

}  // namespace automation

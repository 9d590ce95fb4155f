#include "modeldb/objects/history_steps.h"

#include <cstdio>

#include "com/enumerator.h"
#include "modeldb/ado/argument.h"
#include "modeldb/ado/model_call.h"
#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

/// Local time, as scripts have it everywhere.
DATE local_time(const std::wstring& utc) {
  SYSTEMTIME time{};
  swscanf(utc.c_str(), L"%4hu-%2hu-%2huT%2hu:%2hu:%2hu", &time.wYear, &time.wMonth, &time.wDay,
          &time.wHour, &time.wMinute, &time.wSecond);
  SYSTEMTIME local{};
  DATE date = 0;
  if (SystemTimeToTzSpecificLocalTime(nullptr, &time, &local)) {
    SystemTimeToVariantTime(&local, &date);
  }
  return date;
}

std::int64_t rows_of(const RecordedTable& table) {
  return table.inserted + table.updated + table.deleted;
}

/// "NodalForces: 3 inserted, 1 deleted"
std::wstring changes_of(const RecordedTable& table) {
  std::wstring text;
  const auto add = [&](std::int64_t number, const wchar_t* done) {
    if (number == 0) return;
    text += (text.empty() ? L": " : L", ") + std::to_wstring(number) + done;
  };
  add(table.inserted, L" inserted");
  add(table.updated, L" updated");
  add(table.deleted, L" deleted");
  return table.name + text;
}

void require_bound(long bound, long least, long most, const wchar_t* name) {
  if (bound >= least && bound <= most) return;
  fail(kInvalidArgument, std::wstring(name) + L" of the history cannot be " +
                             std::to_wstring(bound) + L". Give it a number from " +
                             std::to_wstring(least) + L" to " + std::to_wstring(most) + L".");
}

}  // namespace

STDMETHODIMP HistoryStep::get_Number(long* pVal) {
  *pVal = step_.number;
  return S_OK;
}

STDMETHODIMP HistoryStep::get_Name(BSTR* pVal) {
  return com::boundary([&] { *pVal = com::Bstr(step_.name).detach(); });
}

STDMETHODIMP HistoryStep::get_MadeAt(DATE* pVal) {
  *pVal = local_time(step_.made_at);
  return S_OK;
}

STDMETHODIMP HistoryStep::get_IsUndone(VARIANT_BOOL* pVal) {
  *pVal = step_.is_undone ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

STDMETHODIMP HistoryStep::get_Changes(BSTR* pVal) {
  return com::boundary([&] {
    std::wstring text;
    for (const RecordedTable& table : step_.tables) {
      if (rows_of(table) > 0) text += (text.empty() ? L"" : L"; ") + changes_of(table);
    }
    *pVal = com::Bstr(text).detach();
  });
}

STDMETHODIMP HistoryStep::get_Rows(VARIANT vTable, long* pVal) {
  return com::boundary([&] {
    const bool is_all = com::is_omitted(vTable) || vTable.vt == VT_EMPTY;
    const com::Variant name =
        is_all ? com::Variant()
               : argument_as(VT_BSTR, vTable, L"Rows was given no name of a table.");
    std::int64_t rows = 0;
    for (const RecordedTable& table : step_.tables) {
      if (is_all || same_name(table.name, com::Bstr::view(name.get().bstrVal))) {
        rows += rows_of(table);
      }
    }
    *pVal = static_cast<long>(rows);
  });
}

HistorySteps::HistorySteps(com::Ptr<RecordStore> store) : store_(std::move(store)) {
  for (Step& step : store_->model()->history().steps()) {
    steps_.emplace_back(com::make<HistoryStep>(std::move(step)).get());
  }
}

template <class Work>
HRESULT HistorySteps::with_history(Work&& work) {
  return model_call(store_->turns(), [&] { work(store_->model()->history()); });
}

STDMETHODIMP HistorySteps::Item(int Index, IHistoryStep** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    if (Index < 0 || static_cast<std::size_t>(Index) >= steps_.size()) {
      throw com::Error(E_INVALIDARG);
    }
    *pVal = steps_[static_cast<std::size_t>(Index)].query<IHistoryStep>().detach();
  });
}

STDMETHODIMP HistorySteps::get_Count(long* pVal) {
  *pVal = static_cast<long>(steps_.size());
  return S_OK;
}

STDMETHODIMP HistorySteps::get__NewEnum(IUnknown** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    *pVal = com::make<com::FreeThreaded<com::Enumerator>>(steps_).query<IUnknown>().detach();
  });
}

STDMETHODIMP HistorySteps::get_NextNumber(long* pVal) {
  return with_history([&](History& history) { *pVal = history.next_number(); });
}

STDMETHODIMP HistorySteps::get_Note(BSTR* pVal) {
  return with_history([&](History& history) { *pVal = com::Bstr(history.note()).detach(); });
}

STDMETHODIMP HistorySteps::get_MaximumSteps(long* pVal) {
  return with_history([&](History& history) { *pVal = history.bounds().steps; });
}

STDMETHODIMP HistorySteps::put_MaximumSteps(long newVal) {
  return with_history([&](History& history) {
    require_bound(newVal, 0, HistoryBounds::kMostSteps, L"MaximumSteps");
    HistoryBounds bounds = history.bounds();
    bounds.steps = newVal;
    history.set_bounds(bounds);
  });
}

STDMETHODIMP HistorySteps::get_MaximumBytes(long* pVal) {
  return with_history([&](History& history) { *pVal = history.bounds().bytes; });
}

STDMETHODIMP HistorySteps::put_MaximumBytes(long newVal) {
  return with_history([&](History& history) {
    require_bound(newVal, 1, HistoryBounds::kMostBytes, L"MaximumBytes");
    HistoryBounds bounds = history.bounds();
    bounds.bytes = newVal;
    history.set_bounds(bounds);
  });
}

STDMETHODIMP HistorySteps::Clear() {
  return with_history([](History& history) { history.clear(); });
}

std::optional<long> step_number(const VARIANT& argument) {
  if (com::is_omitted(argument) || argument.vt == VT_EMPTY) return std::nullopt;
  // VBScript passes its variables by reference.
  com::Variant value;
  com::check(VariantCopyInd(value.put(), com::mutable_address(argument)));
  if (value.type() == VT_DISPATCH && value.get().pdispVal) {
    com::Ptr<IHistoryStep> step;
    value.get().pdispVal->QueryInterface(__uuidof(IHistoryStep), step.put_void());
    long number = 0;
    if (step && SUCCEEDED(step->get_Number(&number))) return number;
  }
  const com::Variant number = argument_as(
      VT_I4, value, L"What was given is no step. Pass the number of a step, or a step of History.");
  return number.get().lVal;
}

}  // namespace modeldb

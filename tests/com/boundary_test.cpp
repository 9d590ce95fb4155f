// What a failure inside the module looks like from outside.

#include "com/boundary.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(Boundary, EveryExceptionBecomesAFailureAndAnEarlierOnesWordsAreGone) {
  com::Ptr<ICreateErrorInfo> earlier;
  ASSERT_EQ(CreateErrorInfo(earlier.put()), S_OK);
  SetErrorInfo(0, earlier.query<IErrorInfo>().get());
  EXPECT_EQ(com::boundary([] { throw 7; }), E_UNEXPECTED);
  com::Ptr<IErrorInfo> words;
  EXPECT_EQ(GetErrorInfo(0, words.put()), S_FALSE);
  EXPECT_EQ(com::boundary([] { throw std::out_of_range("index"); }), E_UNEXPECTED);
  EXPECT_EQ(com::boundary([] { throw std::bad_alloc(); }), E_OUTOFMEMORY);
  EXPECT_EQ(com::boundary([] { throw com::Error(E_ACCESSDENIED); }), E_ACCESSDENIED);
  EXPECT_EQ(com::boundary([] { return S_FALSE; }), S_FALSE);
}

TEST(Outcome, IsTheLastFailure) {
  com::Outcome outcome;
  outcome.attempt([] { throw com::Error(E_FAIL); });
  outcome.attempt([] { throw std::bad_alloc(); });
  outcome.attempt([] {});
  EXPECT_EQ(outcome.deliver(), E_OUTOFMEMORY);
}

}  // namespace

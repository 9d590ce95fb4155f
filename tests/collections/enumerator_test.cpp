// A collection as its own enumerator, with the one cursor that everything shares.

#include "tests/collections/collection.h"

namespace {

class EnumeratorTest : public CollectionTest {
 protected:
  void SetUp() override {
    CollectionTest::SetUp();
    for (const long id : {1, 2, 3}) add(std::string(1, static_cast<char>('a' + id - 1)), id);
    enumerator_ = start();
  }
  /// As a method, which is how some script engines ask for this property.
  [[nodiscard]] com::Ptr<IEnumVARIANT> start() const {
    com::Variant enumerator;
    DISPPARAMS none{};
    EXPECT_EQ(collection_->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                  &none, enumerator.put(), nullptr, nullptr),
              S_OK);
    EXPECT_EQ(enumerator.type(), VT_UNKNOWN);
    return com::Ptr<IUnknown>(enumerator.get().punkVal).query<IEnumVARIANT>();
  }
  /// The name of the next element; "end" when there is none.
  std::string next() {
    com::Variant element;
    ULONG fetched = 99;
    const HRESULT result = enumerator_->Next(1, element.put(), &fetched);
    if (result == S_FALSE) {
      EXPECT_EQ(element.type(), VT_EMPTY);
      EXPECT_EQ(fetched, 0U);
      return "end";
    }
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(element.type(), VT_DISPATCH);
    EXPECT_EQ(fetched, 1U);
    return host.journal.show(element.get().pdispVal);
  }

  com::Ptr<IEnumVARIANT> enumerator_;
};

TEST_F(EnumeratorTest, YieldsTheItemsInOrderAndThenEmptyVariants) {
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(next(), "b");
  EXPECT_EQ(next(), "c");
  EXPECT_EQ(next(), "end");
  EXPECT_EQ(next(), "end");
  collection_->Clear();
  enumerator_ = start();
  EXPECT_EQ(next(), "end");
}

TEST_F(EnumeratorTest, ServesOneElementAtATimeAlsoWhenNoneIsAskedFor) {
  VARIANT elements[2]{};
  ULONG fetched = 99;
  for (const ULONG several : {2UL, ULONG_MAX}) {
    EXPECT_EQ(enumerator_->Next(several, elements, &fetched), E_INVALIDARG);
    EXPECT_EQ(fetched, 0U);
  }
  com::Variant element;
  EXPECT_EQ(enumerator_->Next(0, element.put(), &fetched), S_OK);
  EXPECT_EQ(fetched, 1U);
  EXPECT_EQ(host.journal.show(element), "a");
}

TEST_F(EnumeratorTest, IsTheCollectionItselfWithOnePositionAndCannotBeCopied) {
  EXPECT_EQ(next(), "a");
  const auto other = start();
  EXPECT_EQ(next(), "a");
  other->Skip(1);
  com::Ptr<IEnumVARIANT> copy;
  EXPECT_EQ(enumerator_->Clone(copy.put()), E_NOTIMPL);
  EXPECT_EQ(enumerator_->Clone(nullptr), E_NOTIMPL);
  EXPECT_EQ(enumerator_->Next(1, nullptr, nullptr), E_POINTER);
  EXPECT_FALSE(copy);
  collection_.reset();
  EXPECT_EQ(next(), "c");
}

TEST_F(EnumeratorTest, SkipMovesByOneAndTellsWhenTheEndIsReached) {
  EXPECT_EQ(enumerator_->Skip(5), S_OK);
  EXPECT_EQ(enumerator_->Skip(0), S_OK);
  EXPECT_EQ(next(), "c");
  enumerator_->Reset();
  enumerator_->Skip(1);
  enumerator_->Skip(1);
  EXPECT_EQ(enumerator_->Skip(1), E_INVALIDARG);
  EXPECT_EQ(enumerator_->Skip(1), E_INVALIDARG);
  EXPECT_EQ(next(), "end");
  EXPECT_EQ(enumerator_->Reset(), S_OK);
  EXPECT_EQ(next(), "a");
}

TEST_F(EnumeratorTest, SaveAndDeleteLeaveThePositionAtTheEnd) {
  EXPECT_EQ(next(), "a");
  collection_->Save(host.database.get(), server::yes(), server::yes());
  EXPECT_EQ(next(), "end");
  enumerator_->Reset();
  collection_->Delete(host.database.get());
  EXPECT_EQ(next(), "end");
  add("d", 4);
}

TEST_F(EnumeratorTest, RemovalLeavesThePositionAtTheGap) {
  collection_->Remove(1);
  EXPECT_EQ(next(), "c");
  collection_->Remove(0);
  EXPECT_EQ(next(), "c");
  enumerator_->Reset();
  collection_->Remove(7);
  EXPECT_EQ(next(), "end");
  enumerator_->Reset();
  collection_->Clear();
  EXPECT_EQ(next(), "end");
}

}  // namespace

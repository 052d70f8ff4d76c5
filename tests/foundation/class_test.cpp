#include "foundation/class.h"

#include <gtest/gtest.h>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/exception.h"
#include "tests/support/failure_text.h"

namespace {

// A reflective class with a two-parameter method, a read-write and a const attribute.
class Counter : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  int32_t total = 0;
};

const AFCClass& Counter::staticClass() {
  static const AFCClass& record =
      (new AFCClassEx("TestCounter", &AFCObject::staticClass()))
          ->defaultConstructor<Counter>()
          .method("add", {&AFCAttributeInt32::staticClass(), &AFCAttributeInt32::staticClass()},
                  &AFCAttributeInt32::staticClass(),
                  [](AFCObject* self, AFCArguments args) -> AFCResult {
                    auto& counter = static_cast<Counter&>(*self);
                    for (AFCAttribute* arg : args) {
                      counter.total += static_cast<AFCAttributeInt32*>(arg)->get();
                    }
                    return std::make_unique<AFCAttributeInt32>(counter.total);
                  })
          .method("fail", {}, nullptr,
                  [](AFCObject*, AFCArguments) -> AFCResult { throw AFCRangeException(5, 0, 3); })
          .attribute(
              "total", &AFCAttributeInt32::staticClass(),
              [](const AFCObject& self) -> AFCResult {
                return std::make_unique<AFCAttributeInt32>(static_cast<const Counter&>(self).total);
              },
              [](AFCObject& self, const AFCAttribute& value) {
                static_cast<Counter&>(self).total =
                    static_cast<const AFCAttributeInt32&>(value).get();
              })
          .attribute("kind", &AFCAttributeString::staticClass(),
                     [](const AFCObject&) -> AFCResult {
                       return std::make_unique<AFCAttributeString>("counter");
                     })
          .registerClass();
  return record;
}

class Reflection : public ::testing::Test {
 protected:
  void SetUp() override {
    registerFoundationClasses();
    Counter::staticClass();
  }
  std::string invokeError(std::vector<AFCAttribute*> args) {
    Counter counter;
    return failureOf([&] { counter.getClass()->invoke(&counter, "add", args); });
  }
};

TEST_F(Reflection, LooksClassesUpByName) {
  const AFCClass* global = AFCClass::forName("");
  ASSERT_NE(global, nullptr);
  EXPECT_EQ(global, &AFCGlobalClassEx::instance());
  EXPECT_EQ(AFCClass::forName("NoSuchClass"), nullptr);
  for (const char* name : {"AFCObject", "AFCPersistent", "AFCAttribute", "AFCAttributeBool",
                           "AFCAttributeWString", "AFCClass", "AFCConstructor", "AFCMethod"}) {
    const AFCClass* record = AFCClass::forName(name);
    ASSERT_NE(record, nullptr) << name;
    EXPECT_EQ(record->getName(), name);
  }
}

TEST_F(Reflection, CreatesInstancesByClassName) {
  std::unique_ptr<AFCObject> made(AFCClass::forName("TestCounter")->newInstance());
  ASSERT_NE(dynamic_cast<Counter*>(made.get()), nullptr);
  EXPECT_EQ(AFCClass::forName("AFCAttribute")->newInstance(), nullptr);  // abstract
}

TEST_F(Reflection, CreatesInstancesThroughTheFirstConstructorWithoutParameters) {
  static int calls = 0;
  auto factory = [](AFCArguments) -> AFCObject* {
    ++calls;
    return new Counter();
  };
  const AFCClass& record = (new AFCClassEx("TestMadeByFactory", &AFCObject::staticClass()))
                               ->constructor({}, factory)
                               .defaultConstructor<Counter>()
                               .registerClass();
  std::unique_ptr<AFCObject> made(record.newInstance());
  EXPECT_NE(dynamic_cast<Counter*>(made.get()), nullptr);
  EXPECT_EQ(calls, 1);
}

TEST_F(Reflection, InvokesMethodsWithCheckedArgumentsAndPassesTheirExceptionsUnchanged) {
  Counter counter;
  AFCAttributeInt32 two(2), three(3), one(1);
  AFCAttribute* args[] = {&two, &three};
  EXPECT_EQ(counter.getClass()->invoke(&counter, "add", args)->toString(), "5");
  EXPECT_EQ(counter.total, 5);
  EXPECT_THROW(counter.getClass()->invoke(&counter, "fail", {}), AFCRangeException);
  EXPECT_THROW(counter.getClass()->invoke(&counter, "missing", {}), AFCIllegalArgumentException);

  AFCAttributeString text("x");
  EXPECT_EQ(invokeError({&one}), "Invalid argument count");
  EXPECT_EQ(invokeError({nullptr, &one}), "Null pointer to args[0]");
  EXPECT_EQ(invokeError({&one, &text}),
            "Invalid argument type, expected AFCAttributeInt32, received AFCAttributeString");
}

TEST_F(Reflection, DescribesMethods) {
  const AFCClass& record = Counter::staticClass();
  EXPECT_EQ(record.findMethod("add")->toString(),
            "add (AFCAttributeInt32, AFCAttributeInt32) returning AFCAttributeInt32");
  EXPECT_EQ(record.findMethod("fail")->toString(), "fail ()");
}

TEST_F(Reflection, GetsAndSetsDeclaredAttributes) {
  Counter counter;
  const AFCDeclaredAttribute* total = counter.getClass()->findAttribute("total");
  total->set(counter, AFCAttributeInt32(7));
  EXPECT_EQ(total->get(counter)->toString(), "7");
  EXPECT_THROW(total->set(counter, AFCAttributeString("7")), AFCInvalidArgumentTypeException);
  const AFCDeclaredAttribute* kind = counter.getClass()->findAttribute("kind");
  EXPECT_TRUE(kind->isConst());
  EXPECT_EQ(failureOf<AFCAccessViolation>([&] { kind->set(counter, AFCAttributeString("o")); }),
            "Access violation: set const attribute");
}

}  // namespace

// CClassFactory: makes its class's objects, refuses aggregation, locks the module, and reports
// a failing constructor.
#include "automation/com/class_factory.h"

#include <gtest/gtest.h>

#include "tests/windows/test_objects.h"

namespace {
class FailingProcessor final : public CDispatchObject<IVXAsyncProcessor> {
 public:
  FailingProcessor() { throw AFCNullPointerException("VXClient"); }
  HRESULT STDMETHODCALLTYPE waitEvent(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE process() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE close() override { return E_NOTIMPL; }
};

template <class Object>
CUniqueRef<IClassFactory> factory() {
  vxbr5();
  IClassFactory* made = nullptr;
  EXPECT_EQ(CClassFactory<Object>::create(IID_IClassFactory, reinterpret_cast<void**>(&made)),
            S_OK);
  return CUniqueRef<IClassFactory>(made);
}

TEST(ClassFactory, MakesObjectsOfItsClassUnaggregated) {
  const CUniqueRef<IClassFactory> classObject = factory<TestProcessor>();
  IVXAsyncProcessor* processor = nullptr;
  ASSERT_EQ(classObject.get()->CreateInstance(nullptr, IID_IVXAsyncProcessor,
                                              reinterpret_cast<void**>(&processor)),
            S_OK);
  const CUniqueRef<IVXAsyncProcessor> owned(processor);
  VARIANT_BOOL answer = VARIANT_FALSE;
  EXPECT_EQ(processor->waitEvent(&answer), S_OK);
  EXPECT_EQ(answer, VARIANT_TRUE);

  void* object = &object;
  EXPECT_EQ(classObject.get()->CreateInstance(processor, IID_IUnknown, &object),
            CLASS_E_NOAGGREGATION);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(classObject.get()->CreateInstance(nullptr, IID_IVXTitle, &object), E_NOINTERFACE);
}

TEST(ClassFactory, KeepsTheModuleWhileLockedOrAlive) {
  const long before = CModule::lockCount();
  {
    const CUniqueRef<IClassFactory> classObject = factory<TestProcessor>();
    ASSERT_EQ(classObject.get()->LockServer(TRUE), S_OK);
  }
  EXPECT_EQ(CModule::lockCount(), before + 1);
  EXPECT_EQ(CModule::canUnloadNow(), S_FALSE);
  factory<TestProcessor>().get()->LockServer(FALSE);
  EXPECT_EQ(CModule::lockCount(), before);
}

TEST(ClassFactory, ReportsAConstructorsFailureUnderTheRequestedInterface) {
  const CUniqueRef<IClassFactory> classObject = factory<FailingProcessor>();
  SetErrorInfo(0, nullptr);
  void* object = &object;
  EXPECT_EQ(classObject.get()->CreateInstance(nullptr, IID_IVXAsyncProcessor, &object), E_FAIL);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(errorObject(IID_IVXAsyncProcessor),
            "id " + AFCNullPointerException("VXClient").toString());
}
}  // namespace

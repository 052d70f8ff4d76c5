// The type library inside VXBr5.dll against the interface tables: entry order, kinds and help
// strings, coclass interfaces, and every member's name, dispatch id, invoke kind, parameters
// and vtable position.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "automation/com/bstr_text.h"
#include "automation/com/com_handles.h"
#include "tests/windows/vxbr5_module.h"
#include "vxbr5.h"

namespace {
CUniqueRef<ITypeLib> library() {
  ITypeLib* lib = nullptr;
  EXPECT_EQ(LoadTypeLibEx(vxbr5().path.c_str(), REGKIND_NONE, &lib), S_OK);
  return CUniqueRef<ITypeLib>(lib);
}

std::string nameOf(ITypeInfo* info, MEMBERID id) {
  BSTR name = nullptr;
  BSTR help = nullptr;
  info->GetDocumentation(id, &name, &help, nullptr, nullptr);
  const CUniqueBstr ownedName(name), ownedHelp(help);
  std::string text = stringFromBstr(name);
  if (help != nullptr) text += " \"" + stringFromBstr(help) + "\"";
  return text;
}

// "name kind flags [\"help\"]" for each entry, in library order.
std::vector<std::string> entries(ITypeLib* lib) {
  static const char* const kinds[] = {"enum",     "record",  "module", "interface",
                                      "dispatch", "coclass", "alias",  "union"};
  std::vector<std::string> out;
  for (UINT index = 0; index < lib->GetTypeInfoCount(); ++index) {
    ITypeInfo* made = nullptr;
    lib->GetTypeInfo(index, &made);
    const CUniqueRef<ITypeInfo> info(made);
    TYPEATTR* attributes = nullptr;
    info.get()->GetTypeAttr(&attributes);
    std::string line = kinds[attributes->typekind];
    if (attributes->wTypeFlags & TYPEFLAG_FDUAL) line += " dual";
    if (attributes->wTypeFlags & TYPEFLAG_FHIDDEN) line += " hidden";
    if (attributes->wTypeFlags & TYPEFLAG_FCANCREATE) line += " creatable";
    info.get()->ReleaseTypeAttr(attributes);
    out.push_back(nameOf(info.get(), MEMBERID_NIL) + " " + line);
  }
  return out;
}

CUniqueRef<ITypeInfo> typeInfoOf(ITypeLib* lib, const GUID& guid) {
  ITypeInfo* info = nullptr;
  EXPECT_EQ(lib->GetTypeInfoOfGuid(guid, &info), S_OK);
  return CUniqueRef<ITypeInfo>(info);
}

// "name default source" for each interface a coclass names.
std::vector<std::string> coclassInterfaces(ITypeInfo* coclass) {
  TYPEATTR* attributes = nullptr;
  coclass->GetTypeAttr(&attributes);
  const UINT count = attributes->cImplTypes;
  coclass->ReleaseTypeAttr(attributes);
  std::vector<std::string> out;
  for (UINT index = 0; index < count; ++index) {
    HREFTYPE type = 0;
    ITypeInfo* made = nullptr;
    INT flags = 0;
    coclass->GetRefTypeOfImplType(index, &type);
    coclass->GetRefTypeInfo(type, &made);
    coclass->GetImplTypeFlags(index, &flags);
    const CUniqueRef<ITypeInfo> info(made);
    std::string line = nameOf(info.get(), MEMBERID_NIL);
    line = line.substr(0, line.find(' '));
    if (flags & IMPLTYPEFLAG_FDEFAULT) line += " default";
    if (flags & IMPLTYPEFLAG_FSOURCE) line += " source";
    out.push_back(line);
  }
  return out;
}

// One member as "vtable-slot name id kind parameters": the slot counts from the first method
// after IDispatch (a dispinterface has none: -); each parameter is one letter: i in, o optional
// in, u out, r out and retval.
std::string describe(ITypeInfo* info, const FUNCDESC& function, bool hasVtable) {
  static const char* const kinds[] = {"", "method", "get", "", "put"};
  char head[64];
  const std::string slot =
      hasVtable ? std::to_string(function.oVft / static_cast<int>(sizeof(void*)) - 7) : "-";
  snprintf(head, sizeof head, " %#lx %s ", static_cast<unsigned long>(function.memid),
           kinds[function.invkind]);
  BSTR name = nullptr;
  UINT count = 0;
  info->GetNames(function.memid, &name, 1, &count);
  const CUniqueBstr owned(name);
  std::string line = slot + " " + stringFromBstr(name) + head;
  for (SHORT index = 0; index < function.cParams; ++index) {
    const USHORT flags = function.lprgelemdescParam[index].paramdesc.wParamFlags;
    line += (flags & PARAMFLAG_FRETVAL) ? 'r'
            : (flags & PARAMFLAG_FOUT)  ? 'u'
            : (flags & PARAMFLAG_FOPT)  ? 'o'
                                        : 'i';
  }
  return line;
}

// The name of the interface an interface derives from.
std::string baseOf(ITypeInfo* info) {
  HREFTYPE type = 0;
  ITypeInfo* base = nullptr;
  if (FAILED(info->GetRefTypeOfImplType(0, &type)) || FAILED(info->GetRefTypeInfo(type, &base))) {
    return "none";
  }
  const CUniqueRef<ITypeInfo> owned(base);
  return nameOf(base, MEMBERID_NIL);
}

// Every member of an interface's vtable view (a dispinterface's own functions), in order.
std::vector<std::string> members(ITypeLib* lib, const GUID& iid) {
  CUniqueRef<ITypeInfo> info = typeInfoOf(lib, iid);
  HREFTYPE vtableType = 0;
  const bool dual = SUCCEEDED(info.get()->GetRefTypeOfImplType(-1, &vtableType));
  if (dual) {
    ITypeInfo* vtable = nullptr;
    info.get()->GetRefTypeInfo(vtableType, &vtable);
    info = CUniqueRef<ITypeInfo>(vtable);
    EXPECT_EQ(baseOf(info.get()), "IDispatch");
  }
  TYPEATTR* attributes = nullptr;
  info.get()->GetTypeAttr(&attributes);
  const WORD count = attributes->cFuncs;
  info.get()->ReleaseTypeAttr(attributes);
  std::vector<std::string> out;
  for (UINT index = 0; index < count; ++index) {
    FUNCDESC* function = nullptr;
    info.get()->GetFuncDesc(index, &function);
    out.push_back(describe(info.get(), *function, dual));
    info.get()->ReleaseFuncDesc(function);
  }
  return out;
}

TEST(TypeLibrary, CarriesItsIdVersionLocaleAndHelpString) {
  const CUniqueRef<ITypeLib> lib = library();
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(lib.get()->GetLibAttr(&attributes), S_OK);
  EXPECT_TRUE(IsEqualGUID(attributes->guid, LIBID_VXBR5Lib));
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->lcid, 0x409u);
  EXPECT_EQ(attributes->syskind, SYS_WIN64);
  lib.get()->ReleaseTLibAttr(attributes);
  BSTR name = nullptr, help = nullptr;
  ASSERT_EQ(lib.get()->GetDocumentation(-1, &name, &help, nullptr, nullptr), S_OK);
  const CUniqueBstr ownedName(name), ownedHelp(help);
  EXPECT_EQ(stringFromBstr(name), "VXBR5Lib");
  EXPECT_EQ(stringFromBstr(help), "Vexel2 Bridge5 Type Library");
}

TEST(TypeLibrary, HoldsItsEntriesInOrder) {
  const std::vector<std::string> expected = {
      "IVXCmdEvents \"Command Events\" dispatch",
      "TitleManager \"TitleManager Class\" coclass creatable",
      "IVXTitleManager \"IVXTitleManager Interface\" dispatch dual",
      "IVXTitle \"IVXTitle Interface\" dispatch dual",
      "IVXCommandList \"Created with CoCreateInstance().\" dispatch dual",
      "IVXClient \"IVXClient Interface\" dispatch dual",
      "IVXAsyncProcessor \"IVXAsyncProcessor Interface\" dispatch dual",
      "IVXAnimation \"IVXAnimation Interface\" dispatch dual",
      "IVXAnimationChannel \"IAnimationChannel Interface\" dispatch dual",
      "IVXAnimationOptions \"IAnimationOptions Interface\" dispatch dual",
      "client \"Client Class\" coclass hidden",
      "Animation \"Animation Class\" coclass creatable",
      "CommandList \"CommandList Class\" coclass creatable",
  };
  EXPECT_EQ(entries(library().get()), expected);
}

TEST(TypeLibrary, ClassesNameTheirDefaultAndSourceInterfaces) {
  struct Case {
    const CLSID* clsid;
    std::vector<std::string> interfaces;
  };
  const Case cases[] = {
      {&CLSID_TitleManager, {"IVXTitleManager default", "IVXCmdEvents default source"}},
      {&CLSID_client, {"IVXClient default", "IVXCmdEvents default source"}},
      {&CLSID_Animation, {"IVXAnimation default"}},
      {&CLSID_CommandList, {"IVXCommandList default"}},
  };
  const CUniqueRef<ITypeLib> lib = library();
  for (const Case& c : cases) {
    EXPECT_EQ(coclassInterfaces(typeInfoOf(lib.get(), *c.clsid).get()), c.interfaces);
  }
}

TEST(TypeLibrary, MembersMatchTheInterfaceTables) {
  struct Case {
    const IID* iid;
    std::vector<std::string> members;
  };
  const Case cases[] = {
      {&DIID_IVXCmdEvents,
       {"- onCommand 0x1 method i", "- onDisconnect 0x2 method ", "- onPickResult 0x3 method i",
        "- onZoneChange 0x4 method ii", "- onMessage 0x5 method i"}},
      {&IID_IVXTitleManager,
       {"0 setProject 0x1 method i", "1 createTitle 0x2 method or", "2 getClient 0x3 method r",
        "3 addCommandCallbackListener 0x4 method i", "4 onCommandCallback 0x5 put i",
        "5 createAnimation 0x6 method r", "6 createAnimationOptions 0x7 method r",
        "7 findTitleByZone 0x8 method ir", "8 findTitleByName 0x9 method ir",
        "9 createTitleInChannel 0xa method iir", "10 getBridgeVersion 0xb method r",
        "11 createCommandList 0xc method r"}},
      {&IID_IVXTitle,
       {"0 setTitleName 0x1 method i",
        "1 destroy 0x2 method ",
        "2 begin 0x3 method ",
        "3 end 0x4 method ",
        "4 loadScene 0x5 method ii",
        "5 createNode 0x6 method ii",
        "6 createEffect 0x7 method ii",
        "7 copyNode 0x8 method ii",
        "8 deleteNode 0x9 method i",
        "9 deleteEffect 0xa method i",
        "10 set 0xb method iii",
        "11 animate 0xc method iio",
        "12 stopAnimation 0xd method ii",
        "13 callSceneAction 0xe method i",
        "14 transactionBegin 0xf method i",
        "15 transactionEnd 0x10 method ",
        "16 transactionRoll 0x11 method i",
        "17 commandCallback 0x12 method r",
        "18 getZone 0x13 method r",
        "19 setProject 0x15 method i",
        "20 setDestroyTransactionName 0x16 method i",
        "21 previewSchedule 0x17 method i",
        "22 destroyInTransaction 0x18 method i",
        "23 preload 0x19 method i",
        "24 previewScheduleBegin 0x1a method i",
        "25 previewScheduleEnd 0x1b method i",
        "26 renameNode 0x1c method ii",
        "27 enableZoneNotification 0x1d method ",
        "28 execute 0x1e method io"}},
      {&IID_IVXCommandList,
       {"0 animate 0x60020000 method iio",
        "1 stopAnimation 0x60020001 method ii",
        "2 set 0x60020002 method iii",
        "3 createNode 0x60020003 method ii",
        "4 createEffect 0x60020004 method ii",
        "5 copyNode 0x60020005 method ii",
        "6 renameNode 0x60020006 method ii",
        "7 deleteNode 0x60020007 method i",
        "8 deleteEffect 0x60020008 method i",
        "9 loadScene 0x60020009 method ii",
        "10 doAction 0x6002000a method i",
        "11 beginTransaction 0x6002000b method o",
        "12 endTransaction 0x6002000c method ",
        "13 rollTransaction 0x6002000d method o",
        "14 callback 0x6002000e method r",
        "15 preload 0x6002000f method i",
        "16 beginSequencePreview 0x60020010 method i",
        "17 endSequencePreview 0x60020011 method i",
        "18 captureStillPreview 0x60020012 method i",
        "19 setZoneState 0x60020013 method i"}},
      {&IID_IVXClient,
       {"0 setServerAddress 0x1 method i",
        "1 connect 0x2 method ",
        "2 disconnect 0x3 method ",
        "3 setZoneState 0x4 method ii",
        "4 getZoneState 0x5 method ir",
        "5 getServerVersion 0x6 method r",
        "6 switchCamera 0x7 method i",
        "7 previewGenerateID 0x8 method r",
        "8 previewSchedule 0x9 method i",
        "9 previewGetStillImageFile 0xa method ii",
        "10 writeRenderPicture 0xb method ",
        "11 onDisconnectListener 0xc put i",
        "12 previewGetSequenceImageFiles 0xd method iir",
        "13 onPickResultListener 0xe put i",
        "14 sendPickRequest 0xf method ii",
        "15 getServerAddress 0x10 method r",
        "16 sendPickRequestTag 0x11 method i",
        "17 writeScene 0x12 method ",
        "18 onMessageListener 0x13 put i",
        "19 roaSet 0x14 method iii",
        "20 roaGet 0x15 method iir",
        "21 roaCall 0x60020015 method iiir",
        "22 setPassword 0x60020016 method i",
        "23 createAsyncProcessor 0x60020017 method r"}},
      {&IID_IVXAsyncProcessor,
       {"0 waitEvent 0x60020000 method r", "1 process 0x60020001 method ",
        "2 close 0x60020002 method "}},
      {&IID_IVXAnimation, {"0 getNative 0x1 method u", "1 createChannel 0x2 method r"}},
      {&IID_IVXAnimationChannel,
       {"0 destination 0x1 get r", "1 destination 0x1 put i", "2 after 0x2 get r",
        "3 after 0x2 put i", "4 before 0x3 get r", "5 before 0x3 put i",
        "6 addKeyframe 0x4 method iiii", "7 addKeyframeWithTangents 0x5 method iiiiiiii"}},
      {&IID_IVXAnimationOptions,
       {"0 getNative 0x1 method u", "1 offset 0x2 get r", "2 offset 0x2 put i", "3 skip 0x3 get r",
        "4 skip 0x3 put i", "5 end 0x4 get r", "6 end 0x4 put i", "7 playMode 0x5 get r",
        "8 playMode 0x5 put i", "9 enableFinish 0x6 get r", "10 enableFinish 0x6 put i",
        "11 name 0x7 get r", "12 name 0x7 put i", "13 watchID 0x8 get r", "14 watchID 0x8 put i"}},
  };
  const CUniqueRef<ITypeLib> lib = library();
  for (const Case& c : cases) EXPECT_EQ(members(lib.get(), *c.iid), c.members);
}

TEST(TypeLibrary, TitleLeavesDispatchIdTwentyUnused) {
  const CUniqueRef<ITypeInfo> title = typeInfoOf(library().get(), IID_IVXTitle);
  BSTR name = nullptr;
  EXPECT_EQ(title.get()->GetDocumentation(20, &name, nullptr, nullptr, nullptr),
            TYPE_E_ELEMENTNOTFOUND);
  SysFreeString(name);
}
}  // namespace

// The type library inside VXBr5.dll against the interface tables: entry order, kinds and help
// strings, coclass interfaces, and every member's name, dispatch id, invoke kind, parameters
// and vtable slot.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
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

// " name default source" for each interface a class names.
std::string coclassInterfaces(ITypeInfo* coclass) {
  TYPEATTR* attributes = nullptr;
  coclass->GetTypeAttr(&attributes);
  const UINT count = attributes->cImplTypes;
  coclass->ReleaseTypeAttr(attributes);
  std::string out;
  for (UINT index = 0; index < count; ++index) {
    HREFTYPE type = 0;
    ITypeInfo* made = nullptr;
    INT flags = 0;
    coclass->GetRefTypeOfImplType(index, &type);
    coclass->GetRefTypeInfo(type, &made);
    coclass->GetImplTypeFlags(index, &flags);
    const CUniqueRef<ITypeInfo> info(made);
    std::string line = " " + nameOf(info.get(), MEMBERID_NIL);
    line = line.substr(0, line.find(' ', 1));
    if (flags & IMPLTYPEFLAG_FDEFAULT) line += " default";
    if (flags & IMPLTYPEFLAG_FSOURCE) line += " source";
    out += line;
  }
  return out;
}

// "name \"help\" kind flags" for each entry, in library order; a class adds the interfaces it
// names with their flags.
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
    const bool coclass = attributes->typekind == TKIND_COCLASS;
    info.get()->ReleaseTypeAttr(attributes);
    if (coclass) line += ":" + coclassInterfaces(info.get());
    out.push_back(nameOf(info.get(), MEMBERID_NIL) + " " + line);
  }
  return out;
}

CUniqueRef<ITypeInfo> typeInfoOf(ITypeLib* lib, const GUID& guid) {
  ITypeInfo* info = nullptr;
  EXPECT_EQ(lib->GetTypeInfoOfGuid(guid, &info), S_OK);
  return CUniqueRef<ITypeInfo>(info);
}

// One member as "name id kind parameters": one letter per parameter, i in, o optional in, u out,
// r out and retval; "-" for none.
std::string describe(ITypeInfo* info, const FUNCDESC& function) {
  static const char* const kinds[] = {"", "method", "get", "", "put"};
  BSTR name = nullptr;
  UINT count = 0;
  info->GetNames(function.memid, &name, 1, &count);
  const CUniqueBstr owned(name);
  char idAndKind[48];
  snprintf(idAndKind, sizeof idAndKind, " %#lx %s ", static_cast<unsigned long>(function.memid),
           kinds[function.invkind]);
  std::string line = stringFromBstr(name) + idAndKind;
  for (SHORT index = 0; index < function.cParams; ++index) {
    const USHORT flags = function.lprgelemdescParam[index].paramdesc.wParamFlags;
    line += (flags & PARAMFLAG_FRETVAL) ? 'r'
            : (flags & PARAMFLAG_FOUT)  ? 'u'
            : (flags & PARAMFLAG_FOPT)  ? 'o'
                                        : 'i';
  }
  return function.cParams == 0 ? line + "-" : line;
}

// The packed list "a; b; c" as its entries.
std::vector<std::string> unpacked(std::string_view list) {
  std::vector<std::string> out;
  for (size_t start = 0; start <= list.size();) {
    const size_t end = std::min(list.find("; ", start), list.size());
    out.emplace_back(list.substr(start, end - start));
    start = end + 2;
  }
  return out;
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

// Every member of an interface's vtable view (a dispinterface's own functions), in order; a
// member out of its vtable slot says so.
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
    std::string line = describe(info.get(), *function);
    const int slot = function->oVft / static_cast<int>(sizeof(void*)) - 7;
    if (dual && slot != static_cast<int>(index)) line += " in slot " + std::to_string(slot);
    out.push_back(line);
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
  const std::string_view expected =
      "IVXCmdEvents \"Command Events\" dispatch; "
      "TitleManager \"TitleManager Class\" coclass creatable: IVXTitleManager default "
      "IVXCmdEvents default source; "
      "IVXTitleManager \"IVXTitleManager Interface\" dispatch dual; "
      "IVXTitle \"IVXTitle Interface\" dispatch dual; "
      "IVXCommandList \"Created with CoCreateInstance().\" dispatch dual; "
      "IVXClient \"IVXClient Interface\" dispatch dual; "
      "IVXAsyncProcessor \"IVXAsyncProcessor Interface\" dispatch dual; "
      "IVXAnimation \"IVXAnimation Interface\" dispatch dual; "
      "IVXAnimationChannel \"IAnimationChannel Interface\" dispatch dual; "
      "IVXAnimationOptions \"IAnimationOptions Interface\" dispatch dual; "
      "client \"Client Class\" coclass hidden: IVXClient default IVXCmdEvents default source; "
      "Animation \"Animation Class\" coclass creatable: IVXAnimation default; "
      "CommandList \"CommandList Class\" coclass creatable: IVXCommandList default";
  EXPECT_EQ(entries(library().get()), unpacked(expected));
}

// Every member is listed, so IVXTitle's missing 0x14 is checked too.
TEST(TypeLibrary, MembersMatchTheInterfaceTables) {
  struct Case {
    const IID* iid;
    std::string_view members;
  };
  const Case cases[] = {
      {&DIID_IVXCmdEvents,
       "onCommand 0x1 method i; onDisconnect 0x2 method -; onPickResult 0x3 method i; "
       "onZoneChange 0x4 method ii; onMessage 0x5 method i"},
      {&IID_IVXTitleManager,
       "setProject 0x1 method i; createTitle 0x2 method or; getClient 0x3 method r; "
       "addCommandCallbackListener 0x4 method i; onCommandCallback 0x5 put i; "
       "createAnimation 0x6 method r; createAnimationOptions 0x7 method r; "
       "findTitleByZone 0x8 method ir; findTitleByName 0x9 method ir; "
       "createTitleInChannel 0xa method iir; getBridgeVersion 0xb method r; "
       "createCommandList 0xc method r"},
      {&IID_IVXTitle,
       "setTitleName 0x1 method i; destroy 0x2 method -; begin 0x3 method -; end 0x4 method -; "
       "loadScene 0x5 method ii; createNode 0x6 method ii; createEffect 0x7 method ii; "
       "copyNode 0x8 method ii; deleteNode 0x9 method i; deleteEffect 0xa method i; "
       "set 0xb method iii; animate 0xc method iio; stopAnimation 0xd method ii; "
       "callSceneAction 0xe method i; transactionBegin 0xf method i; "
       "transactionEnd 0x10 method -; transactionRoll 0x11 method i; "
       "commandCallback 0x12 method r; getZone 0x13 method r; setProject 0x15 method i; "
       "setDestroyTransactionName 0x16 method i; previewSchedule 0x17 method i; "
       "destroyInTransaction 0x18 method i; preload 0x19 method i; "
       "previewScheduleBegin 0x1a method i; previewScheduleEnd 0x1b method i; "
       "renameNode 0x1c method ii; enableZoneNotification 0x1d method -; "
       "execute 0x1e method io"},
      {&IID_IVXCommandList,
       "animate 0x60020000 method iio; stopAnimation 0x60020001 method ii; "
       "set 0x60020002 method iii; createNode 0x60020003 method ii; "
       "createEffect 0x60020004 method ii; copyNode 0x60020005 method ii; "
       "renameNode 0x60020006 method ii; deleteNode 0x60020007 method i; "
       "deleteEffect 0x60020008 method i; loadScene 0x60020009 method ii; "
       "doAction 0x6002000a method i; beginTransaction 0x6002000b method o; "
       "endTransaction 0x6002000c method -; rollTransaction 0x6002000d method o; "
       "callback 0x6002000e method r; preload 0x6002000f method i; "
       "beginSequencePreview 0x60020010 method i; endSequencePreview 0x60020011 method i; "
       "captureStillPreview 0x60020012 method i; setZoneState 0x60020013 method i"},
      {&IID_IVXClient,
       "setServerAddress 0x1 method i; connect 0x2 method -; disconnect 0x3 method -; "
       "setZoneState 0x4 method ii; getZoneState 0x5 method ir; getServerVersion 0x6 method r; "
       "switchCamera 0x7 method i; previewGenerateID 0x8 method r; "
       "previewSchedule 0x9 method i; previewGetStillImageFile 0xa method ii; "
       "writeRenderPicture 0xb method -; onDisconnectListener 0xc put i; "
       "previewGetSequenceImageFiles 0xd method iir; onPickResultListener 0xe put i; "
       "sendPickRequest 0xf method ii; getServerAddress 0x10 method r; "
       "sendPickRequestTag 0x11 method i; writeScene 0x12 method -; "
       "onMessageListener 0x13 put i; roaSet 0x14 method iii; roaGet 0x15 method iir; "
       "roaCall 0x60020015 method iiir; setPassword 0x60020016 method i; "
       "createAsyncProcessor 0x60020017 method r"},
      {&IID_IVXAsyncProcessor,
       "waitEvent 0x60020000 method r; process 0x60020001 method -; close 0x60020002 method -"},
      {&IID_IVXAnimation, "getNative 0x1 method u; createChannel 0x2 method r"},
      {&IID_IVXAnimationChannel,
       "destination 0x1 get r; destination 0x1 put i; after 0x2 get r; after 0x2 put i; "
       "before 0x3 get r; before 0x3 put i; addKeyframe 0x4 method iiii; "
       "addKeyframeWithTangents 0x5 method iiiiiiii"},
      {&IID_IVXAnimationOptions,
       "getNative 0x1 method u; offset 0x2 get r; offset 0x2 put i; skip 0x3 get r; "
       "skip 0x3 put i; end 0x4 get r; end 0x4 put i; playMode 0x5 get r; playMode 0x5 put i; "
       "enableFinish 0x6 get r; enableFinish 0x6 put i; name 0x7 get r; name 0x7 put i; "
       "watchID 0x8 get r; watchID 0x8 put i"},
  };
  const CUniqueRef<ITypeLib> lib = library();
  for (const Case& c : cases) EXPECT_EQ(members(lib.get(), *c.iid), unpacked(c.members));
}

}  // namespace

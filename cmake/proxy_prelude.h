/* Included ahead of every proxy source that widl makes, which takes the C macros of the interfaces
   and these functions of the RPC runtime as declared. */
#pragma once

#define COBJMACROS
#include <objbase.h>

HRESULT CALLBACK IUnknown_QueryInterface_Proxy(IUnknown* self, REFIID iid, void** object);
ULONG CALLBACK IUnknown_AddRef_Proxy(IUnknown* self);
ULONG CALLBACK IUnknown_Release_Proxy(IUnknown* self);

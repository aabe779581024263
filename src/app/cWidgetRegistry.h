// The handle registry of the C interface: handle (the Qt widget's pointer) to top object,
// one table for widgets and one for windows, and the interface mutex.
#pragma once

#include <cstdio>
#include <map>

#include "base/cVxThread.h"

namespace vx3 {

class wxZelWaveWidgetWrapper;

template <class T>
class cWidgetInterface {
public:
    cWidgetInterface() : mMutex("widget table") {}
    void add(void* handle, T* object)
    {
        cVxScopedLock lock(mMutex);
        mTable[handle] = object;
        printErrors = false;
    }
    void remove(void* handle)
    {
        cVxScopedLock lock(mMutex);
        mTable.erase(handle);
    }
    T* find(void* handle)
    {
        cVxScopedLock lock(mMutex);
        auto found = mTable.find(handle);
        return found == mTable.end() ? nullptr : found->second;
    }
    bool printErrors = true;

private:
    cVxMutex mMutex;
    std::map<void*, T*> mTable;
};

template <class W, class M>
class cWidgetAndWindowInterfaceWithMutex {
public:
    cWidgetAndWindowInterfaceWithMutex() : interfaceMutex("zelwave interface") {}
    // Widgets first, then windows; prints the miss when the tables ask for it.
    wxZelWaveWidgetWrapper* find(void* handle)
    {
        if (W* widget = widgets.find(handle))
            return widget;
        if (M* window = windows.find(handle))
            return window;
        if (widgets.printErrors && windows.printErrors) {
            std::printf("Could not find widget with interface id 0x%llx\n",
                        static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(handle)));
            std::fflush(stdout);
        }
        return nullptr;
    }
    bool printErrors() const { return widgets.printErrors && windows.printErrors; }
    void remove(void* handle)
    {
        widgets.remove(handle);
        windows.remove(handle);
    }
    cWidgetInterface<W> widgets;
    cWidgetInterface<M> windows;
    cVxMutex interfaceMutex;
};

class qtZelWaveWidget;
class qtZelWaveMainWindow;
using cZelWaveRegistry = cWidgetAndWindowInterfaceWithMutex<qtZelWaveWidget, qtZelWaveMainWindow>;
cZelWaveRegistry& zelWaveRegistry();

}  // namespace vx3

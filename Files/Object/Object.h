#pragma once

#include "Files/Instance/Instance.h"
#include "Platform/Containers.h"

// An object: what instances are made from.
class CObject
{
public:
    KvList<CInstance> m_Instances_Recursive; // instances of this object and of its children, in a stable order
};

extern KvHash<CObject>* g_ObjectHash; // by object index; null before a game is loaded
extern int g_DummyObjectIndex;        // the object of helper instances that no room shows

#pragma once
// The host's maps and lists, as far as the module reads them.

// A map from int keys to objects that it does not own. How it stores them is the host's business: the host
// specialises Find for each T that it keeps (CInstance, CObject).
template <typename T> class KvHash
{
public:
    T* Find(int key) const; // null when missing
};

template <typename T> struct KvListNode
{
    KvListNode* m_next; // null at the end
    T* m_obj;           // may be null: readers stop there
};

template <typename T> struct KvList
{
    KvListNode<T>* m_first; // null when empty
};

// The two container families of the program.
//
// clsPCollection<T>: a growable array of pointers; an owner deletes the elements it drops. It grows by a
// quarter plus one. clsC<T> adds copying Add and by-value GetAt, and reads and writes the list as text.
//
// clsCollection<T>: an array of nodes of variant key and value pointer. It looks like a list and acts as a
// map: keys need not be unique and may be absent, Find scans in order, and bisects once Sort has ordered the
// keys (any Add undoes that). It grows by doubling and keeps one slot free. Slots may be null (holes left
// by Remove); Compact drops them.
//
// Neither has a lock: whoever shares one guards it.
#pragma once

#include <climits>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include "nuvobase/clsstring.h"
#include "nuvobase/clsvariant.h"

namespace nuvobase {

// --- clsPCollection
// ---------------------------------------------------------------------------------------------

template <class T> class clsPCollection {
public:
    T** Items = nullptr; // null until the first element
    int32_t Count = 0;
    int32_t Capacity = 0;
    bool Owner = true; // deletes the elements it removes

    explicit clsPCollection(bool owner = true) : Owner(owner) {}
    // An owner copies the elements; a list that does not own them shares the pointers.
    clsPCollection(const clsPCollection& other) : Owner(other.Owner) { CopyItems(other); }
    clsPCollection& operator=(const clsPCollection& other) {
        if (this != &other) {
            Clear();
            Owner = other.Owner;
            CopyItems(other);
        }
        return *this;
    }
    virtual ~clsPCollection() { Clear(); }

    // Appends; returns the index, or -1 when the array cannot grow.
    int Add(T* item) {
        if (!Items && !Resize(1)) return -1;
        if (Count >= Capacity) {
            const int64_t grown = Count < 1 ? 1 : static_cast<int64_t>(Capacity) * 5 / 4 + 1;
            if (grown > INT32_MAX || !Resize(static_cast<int>(grown))) return -1;
        }
        Items[Count] = item;
        return Count++;
    }

    // Makes room for capacity slots. False when capacity is below Count or the memory is not there; a
    // capacity not above the present one changes nothing.
    bool Resize(int capacity) {
        if (Items && capacity < Count) return false;
        if (capacity <= Capacity) return true;
        T** items = new (std::nothrow) T*[capacity];
        if (!items) return false;
        if (Count > 0) std::memcpy(items, Items, sizeof(T*) * Count);
        std::memset(items + Count, 0, sizeof(T*) * (capacity - Count));
        delete[] Items;
        Items = items;
        Capacity = capacity;
        return true;
    }

    // Removes the element (deleting it if Owner) and closes the gap; Count then drops past null slots at
    // the end. False for an index out of range.
    bool Delete(int index) {
        if (index < 0 || index >= Count) return false;
        if (Owner) delete Items[index];
        std::memmove(Items + index, Items + index + 1, sizeof(T*) * (Count - index - 1));
        Items[--Count] = nullptr;
        while (Count > 0 && !Items[Count - 1]) Count--;
        return true;
    }

    // Removes every element (deleting them if Owner); keepArray keeps the slots for reuse.
    void Clear(bool keepArray = false) {
        if (Owner)
            for (int i = 0; i < Count; i++) delete Items[i];
        if (keepArray) {
            if (Items) std::memset(Items, 0, sizeof(T*) * Capacity);
        } else {
            delete[] Items;
            Items = nullptr;
            Capacity = 0;
        }
        Count = 0;
    }

    // The pointer at index, null when out of range.
    T* At(int index) const { return index >= 0 && index < Count ? Items[index] : nullptr; }

private:
    void CopyItems(const clsPCollection& other) {
        if (!Resize(other.Count)) return;
        for (int i = 0; i < other.Count; i++) {
            T* item = other.Items[i];
            Items[i] = Owner && item ? new T(*item) : item;
        }
        Count = other.Count;
    }
};

// --- clsC
// -------------------------------------------------------------------------------------------------------

// A list that reads and writes itself as separated text.
class clsC_GetSet_Interface {
public:
    virtual ~clsC_GetSet_Interface() = default;
    // Empties the list, then adds the pieces of text between separators in order (the last piece ends at the
    // end of the text), trimmed of spaces at both ends with trim. An empty text leaves the list empty.
    virtual void SetText(const clsString& text, char separator, bool trim) = 0;
    // The elements first..last joined with separator; last -1 or beyond the end means the last element. Null
    // elements are skipped without a separator. With quoted each element is in single quotes, inner ones
    // doubled.
    virtual clsString GetText(const char* separator, bool quoted = false, int first = 0,
                              int last = -1) const = 0;
};

// Text forms of the element kinds a clsC holds.
clsString ElementToText(const clsString& value);
clsString ElementToText(int value);
clsString ElementToText(uint64_t value);
void ElementFromText(const clsString& text, clsString& value);
void ElementFromText(const clsString& text, int& value);      // as atoi
void ElementFromText(const clsString& text, uint64_t& value); // as ToUInt64

template <class T> class clsC : public clsPCollection<T>, public clsC_GetSet_Interface {
public:
    using clsPCollection<T>::clsPCollection;
    using clsPCollection<T>::Add;
    using clsPCollection<T>::Count;
    using clsPCollection<T>::Items;

    // Stores copies new copies of value; returns the index of the first, -1 for copies below 1 or when the
    // array cannot grow.
    int Add(const T& value, int copies = 1) {
        if (copies < 1) return -1;
        int first = -1;
        for (int i = 0; i < copies; i++) {
            T* copy = new T(value);
            const int index = Add(copy);
            if (index < 0) {
                delete copy;
                return -1;
            }
            if (i == 0) first = index;
        }
        return first;
    }

    // A copy of the element, or the default value (empty text, 0) for a null slot or an index out of range.
    T GetAt(int index) const {
        const T* item = this->At(index);
        return item ? *item : T();
    }

    void SetText(const clsString& text, char separator, bool trim) override {
        this->Clear();
        const int size = text.Size();
        if (size == 0) return;
        for (int start = 0;;) {
            int end = text.Find(separator, start);
            if (end < 0) end = size;
            clsString piece = text.Mid(start, end - start);
            if (trim) piece.Trim(' ', true);
            T value;
            ElementFromText(piece, value);
            Add(value);
            if (end >= size) break;
            start = end + 1;
        }
    }

    clsString GetText(const char* separator, bool quoted = false, int first = 0,
                      int last = -1) const override {
        clsString text;
        if (last < 0 || last >= Count) last = Count - 1;
        bool empty = true;
        for (int i = first < 0 ? 0 : first; i <= last; i++) {
            if (!Items[i]) continue;
            if (!empty) text.Append(separator);
            const clsString element = ElementToText(*Items[i]);
            text.Append(quoted ? element.Quote('\'') : element);
            empty = false;
        }
        return text;
    }
};

// --- nodes
// ------------------------------------------------------------------------------------------------------

// A node's key: a private variant that the node deletes.
class clsNodoBase {
public:
    clsVariant* Key = nullptr;

    clsNodoBase() = default;
    explicit clsNodoBase(clsVariant* key) : Key(key) {}
    clsNodoBase(const clsNodoBase&) = delete;
    clsNodoBase& operator=(const clsNodoBase&) = delete;
    virtual ~clsNodoBase() { delete Key; }

    // A private copy of key: a text key is built anew as a plain clsVariantString, any other kind is cloned.
    static clsVariant* CloneKey(const clsVariant* key) {
        if (!key) return nullptr;
        if (key->TypeCode() == clsVariant::TypeString) return new clsVariantString(key->GetString());
        return key->Clone();
    }
};

template <class T> class clsNodo : public clsNodoBase {
public:
    T* Value = nullptr; // may be null
    bool OwnsValue = false;

    clsNodo(clsVariant* key, T* value, bool ownsValue)
        : clsNodoBase(key), Value(value), OwnsValue(ownsValue) {}
    ~clsNodo() override {
        if (OwnsValue) delete Value;
    }

    // Takes a new key and value: an owned old value is deleted, and the old key unless it is the one stored.
    void Replace(clsVariant* key, T* value, bool ownsValue) {
        if (OwnsValue && Value != value) delete Value;
        if (Key != key) {
            delete Key;
            Key = key;
        }
        Value = value;
        OwnsValue = ownsValue;
    }

    // Hands the value to the caller; the node no longer deletes it.
    T* ReleaseValue() {
        T* value = Value;
        Value = nullptr;
        OwnsValue = false;
        return value;
    }
};

// Sorts items[low..high] by cmp (negative, 0, positive). A three-way quick sort whose pivot is held out of
// the partitions, so every pass makes progress and no index leaves the range even if cmp is inconsistent.
template <class P, class Comparer> void QuickSortPointers(P** items, int low, int high, const Comparer& cmp) {
    while (low < high) {
        std::swap(items[low], items[low + (high - low) / 2]);
        P* pivot = items[low];
        int less = low, at = low + 1, greater = high;
        while (at <= greater) {
            const int order = cmp(items[at], pivot);
            if (order < 0)
                std::swap(items[less++], items[at++]);
            else if (order > 0)
                std::swap(items[at], items[greater--]);
            else
                at++;
        }
        // items[less..greater] now equal the pivot; recurse into the smaller side, loop on the larger.
        if (less - low < high - greater) {
            QuickSortPointers(items, low, less - 1, cmp);
            low = greater + 1;
        } else {
            QuickSortPointers(items, greater + 1, high, cmp);
            high = less - 1;
        }
    }
}

// --- clsCollection
// ----------------------------------------------------------------------------------------------

template <class T> class clsCollection {
public:
    using Node = clsNodo<T>;
    // Orders two nodes: negative, 0 or positive. Either may be null.
    using Comparer = int (*)(const Node* a, const Node* b);

    Node** Nodes = nullptr; // slots are null until used, and again after Remove leaves a hole
    int32_t Count = 0;      // slots in use, null slots included
    int32_t Capacity = 0;   // slots allocated; one is always free
    unsigned Owner : 1 = 1; // new nodes own their value
    unsigned : 1;
    unsigned Sorted : 1 = 0;     // the keys are in ascending order: Find may bisect
    unsigned Descending : 1 = 0; // the sort order is descending
    int Tag = 0;                 // for the user of the collection

    explicit clsCollection(bool owner = true) : Owner(owner) {}
    // Keys are cloned; a value the source node owns is copied, a value it does not own is shared.
    clsCollection(const clsCollection& other) { CopyNodes(other); }
    clsCollection& operator=(const clsCollection& other) {
        if (this != &other) {
            Clear(true);
            CopyNodes(other);
        }
        return *this;
    }
    virtual ~clsCollection() { Clear(true); }

    // Appends under a text key.
    virtual int Add(const clsString& text, T* value, bool notOwned = false) {
        return Append(new clsVariantString(text), value, notOwned);
    }
    virtual int Add(const clsVariant& key, T* value, bool notOwned = false) {
        return Add(&key, value, notOwned);
    }
    // Appends under a private clone of key (null for none). Returns the index, -1 on failure.
    virtual int Add(const clsVariant* key, T* value, bool notOwned = false) {
        return Append(clsNodoBase::CloneKey(key), value, notOwned);
    }
    // Adds the key and value of node; the value stays the node's to delete. -1 for a null node.
    virtual int AddNode(const Node* node) { return node ? Add(node->Key, node->Value, true) : -1; }
    // Appends without a key.
    virtual int AddValue(T* value, bool notOwned = false) { return Add(nullptr, value, notOwned); }
    // The index of the key, or of a new node under it. A key that exists keeps its value, and value is not
    // taken.
    virtual int Ensure(const clsString& text, T* value, bool notOwned = false) {
        const int index = Find(text);
        return index >= 0 ? index : Add(text, value, notOwned);
    }
    virtual int Ensure(const clsVariant& key, T* value, bool notOwned = false) {
        const int index = Find(key);
        return index >= 0 ? index : Add(key, value, notOwned);
    }
    // Replaces the value under the key, or adds a node. Returns the index.
    virtual int Set(const clsString& text, T* value) {
        const int index = Find(text);
        return index < 0 ? Add(text, value) : ReplaceValue(index, value);
    }
    virtual int Set(const clsVariant& key, T* value) {
        const int index = Find(key);
        return index < 0 ? Add(key, value) : ReplaceValue(index, value);
    }

    // Moves a node to index to, shifting those between. False for equal or out-of-range indices.
    virtual bool Move(int from, int to) {
        if (from == to || from < 0 || to < 0 || from >= Count || to >= Count) return false;
        Node* node = Nodes[from];
        if (from < to)
            std::memmove(Nodes + from, Nodes + from + 1, sizeof(Node*) * (to - from));
        else
            std::memmove(Nodes + to + 1, Nodes + to, sizeof(Node*) * (from - to));
        Nodes[to] = node;
        return true;
    }

    // Deletes the node at index (with keepValue its value survives, the caller's to delete). Then, with
    // swapLast and without keepValue, the last node fills the slot; else with closeGap the later slots move
    // down; else the hole stays and Count is unchanged. Returns Count.
    virtual int Remove(int index, bool closeGap = true, bool keepValue = false, bool swapLast = false) {
        if (index < 0 || index >= Count) return Count;
        DeleteNode(index, keepValue);
        if (swapLast && !keepValue) {
            Nodes[index] = Nodes[Count - 1];
            Nodes[--Count] = nullptr;
        } else if (closeGap) {
            std::memmove(Nodes + index, Nodes + index + 1, sizeof(Node*) * (Count - index - 1));
            Nodes[--Count] = nullptr;
        }
        return Count;
    }
    virtual int Remove(const clsVariant& key, bool closeGap = true, bool keepValue = false,
                       bool swapLast = false) {
        return Remove(Find(key), closeGap, keepValue, swapLast);
    }
    // Removes the node that holds value; -1 when none does, else Count.
    virtual int RemoveValue(const T* value, bool closeGap = true, bool keepValue = false,
                            bool swapLast = false) {
        for (int i = 0; i < Count; i++)
            if (Nodes[i] && Nodes[i]->Value == value) return Remove(i, closeGap, keepValue, swapLast);
        return -1;
    }
    // Removes every node at index and above, so that Count becomes index; at 0 or below the array goes too.
    // closeGap and swapLast make no difference at the end of the list. Returns Count.
    virtual int RemoveFrom(int index, bool /*closeGap*/ = true, bool keepValue = false,
                           bool /*swapLast*/ = false) {
        for (int i = Count - 1; i >= index && i >= 0; i--) DeleteNode(i, keepValue);
        if (index <= 0)
            Clear(true);
        else if (index < Count)
            Count = index;
        return Count;
    }
    // Drops null slots and nodes without a value, keeping the order, and zeroes the slots freed. No value is
    // deleted. Returns Count.
    virtual int Compact() {
        int kept = 0;
        for (int i = 0; i < Count; i++) {
            Node* node = Nodes[i];
            Nodes[i] = nullptr;
            if (node && node->Value)
                Nodes[kept++] = node;
            else
                delete node;
        }
        Count = kept;
        return Count;
    }
    // With deleteNodes every node is deleted (and with it the values it owns). The array is always freed.
    virtual void Clear(bool deleteNodes = true) {
        if (deleteNodes)
            for (int i = 0; i < Count; i++) delete Nodes[i];
        delete[] Nodes;
        Nodes = nullptr;
        Count = 0;
        Capacity = 0;
    }
    // Compacts, then sorts the nodes with comparer, or by key when it is null (ascending, or descending with
    // Descending). Sets Sorted.
    virtual void Sort(Comparer comparer = nullptr) {
        Compact();
        if (Count > 1) {
            if (comparer)
                QuickSortPointers(Nodes, 0, Count - 1, comparer);
            else if (Descending)
                QuickSortPointers(Nodes, 0, Count - 1,
                                  [](const Node* a, const Node* b) { return CompareKeys(b, a); });
            else
                QuickSortPointers(Nodes, 0, Count - 1, CompareKeys);
        }
        Sorted = 1;
    }
    // Sort with Descending set for the sort and restored behind it.
    virtual void SortDescending(Comparer comparer = nullptr) {
        const unsigned descending = Descending;
        Descending = 1;
        Sort(comparer);
        Descending = descending;
    }

    // The default key order: a null node first, a node without key after every node with one, keys by their
    // Compare.
    static int CompareKeys(const Node* a, const Node* b) {
        if (!a || !b) return a == b ? 0 : (a ? 1 : -1);
        if (!a->Key || !b->Key) return a->Key == b->Key ? 0 : (a->Key ? -1 : 1);
        return a->Key->Compare(*b->Key);
    }

    // Index of the first node whose key compares equal (texts ignore ASCII case), else -1. Bisects when
    // Sorted and Count is above 5, scans otherwise.
    int Find(const clsVariant& key) const {
        if (!Nodes) return -1;
        if (Sorted && Count > 5) return Bisect(key);
        for (int i = 0; i < Count; i++)
            if (Nodes[i] && Nodes[i]->Key && Nodes[i]->Key->Compare(key) == 0) return i;
        return -1;
    }
    int Find(const clsString& text) const { return Find(clsVariantString(text)); }
    // The value at index, or null.
    T* ValueAt(int index) const {
        const Node* node = NodeAt(index);
        return node ? node->Value : nullptr;
    }
    // The key at index, or null.
    clsVariant* KeyAt(int index) const {
        const Node* node = NodeAt(index);
        return node ? node->Key : nullptr;
    }
    Node* NodeAt(int index) const { return index >= 0 && index < Count ? Nodes[index] : nullptr; }

protected:
    // Deletes the node at index and leaves its slot null; with keepValue its value is not deleted.
    void DeleteNode(int index, bool keepValue) {
        if (Nodes[index] && keepValue) Nodes[index]->ReleaseValue();
        delete Nodes[index];
        Nodes[index] = nullptr;
    }

private:
    // Appends a node under key, which it takes over. -1, with key deleted, when the array cannot grow.
    int Append(clsVariant* key, T* value, bool notOwned) {
        Sorted = 0;
        if (!Nodes) {
            if (Capacity < 1) Capacity = 2;
            Nodes = new (std::nothrow) Node*[Capacity]();
            if (!Nodes) {
                Capacity = 0;
                delete key;
                return -1;
            }
        }
        if (Count + 1 >= Capacity && !Grow()) {
            delete key;
            return -1;
        }
        Nodes[Count] = new Node(key, value, notOwned ? false : Owner != 0);
        return Count++;
    }

    bool Grow() {
        const int64_t capacity = Capacity < 1 ? 2 : static_cast<int64_t>(Capacity) * 2;
        if (capacity > INT32_MAX) return false;
        Node** nodes = new (std::nothrow) Node*[capacity]();
        if (!nodes) return false;
        std::memcpy(nodes, Nodes, sizeof(Node*) * Count);
        delete[] Nodes;
        Nodes = nodes;
        Capacity = static_cast<int32_t>(capacity);
        return true;
    }

    int ReplaceValue(int index, T* value) {
        Nodes[index]->Replace(Nodes[index]->Key, value, Owner != 0);
        return index;
    }

    // Bisection over ascending keys, stepping over null slots: from the midpoint downward, or upward when
    // there is nothing below it. A node without key ends the search.
    int Bisect(const clsVariant& key) const {
        int low = 0, high = Count;
        while (low < high && !Nodes[low]) low++;
        while (low < high) {
            const int middle = low + (high - low) / 2;
            int at = middle;
            while (at >= low && !Nodes[at]) at--;
            if (at < low) {
                at = middle;
                while (at < high && !Nodes[at]) at++;
                if (at >= high) return -1;
            }
            if (!Nodes[at]->Key) return -1;
            const int order = Nodes[at]->Key->Compare(key);
            if (order == 0) return at;
            if (order < 0)
                low = at + 1;
            else
                high = at;
        }
        return -1;
    }

    void CopyNodes(const clsCollection& other) {
        Owner = other.Owner;
        Sorted = other.Sorted;
        Descending = other.Descending;
        Tag = other.Tag;
        if (!other.Nodes) return;
        Nodes = new (std::nothrow) Node*[other.Capacity]();
        if (!Nodes) return;
        Capacity = other.Capacity;
        Count = other.Count;
        for (int i = 0; i < Count; i++) {
            const Node* node = other.Nodes[i];
            if (!node) continue;
            T* value = node->OwnsValue && node->Value ? new T(*node->Value) : node->Value;
            Nodes[i] = new Node(clsNodoBase::CloneKey(node->Key), value, node->OwnsValue);
        }
    }
};

// A clsCollection that can also order its nodes by the values themselves.
template <class T> class clsCollectionExt : public clsCollection<T> {
public:
    using clsCollection<T>::clsCollection;

    // Compacts, then sorts by T's own operator<, descending when asked; the direction goes to Descending.
    // The keys are no longer in order afterwards, so Sorted is cleared.
    virtual void SortValues(bool descending) {
        this->Compact();
        this->Descending = descending ? 1 : 0;
        this->Sorted = 0;
        if (this->Count < 2) return;
        QuickSortPointers(this->Nodes, 0, this->Count - 1,
                          [descending](const clsNodo<T>* a, const clsNodo<T>* b) {
                              const int order = *a->Value < *b->Value ? -1 : (*b->Value < *a->Value ? 1 : 0);
                              return descending ? -order : order;
                          });
    }
};

} // namespace nuvobase

/*
 * The contract between the plug-in library and its host: plain C data and one table of functions. No C++ type and no
 * exception crosses it. All text is UTF-8.
 *
 * The host passes a host_link to the library's entry point DMPlugIn_Link_2. Every other request of the library, and
 * every script function that it offers, goes through the table that the link points to.
 *
 * Threads: unless a comment says otherwise, all functions of the table and all native functions are called on the
 * host's main thread. The native function of ZXWTFMulDLL may be called on any thread, several at once, while the
 * library is running; the library then calls the table on that thread.
 *
 * Ownership: objects are reference-counted. "Lent" means that the caller keeps its reference; a callee that keeps the
 * object adds its own. "Counted for the caller" means that the caller has to release the object.
 */
#ifndef ZENTRIX_CONTRACT_HOST_LINK_H
#define ZENTRIX_CONTRACT_HOST_LINK_H

#include <stdint.h>

#ifdef _WIN32
#define HOST_CALL __cdecl
#else
#define HOST_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Version of the linking protocol, returned by DMPlugIn_GetVersion. */
#define HOST_LINK_PROTOCOL 2

/* An image, tag group, script object, string, function, script class or throwable of the host. */
typedef struct host_object host_object;

/* The kind of a host_value. The type words of prototypes map to kinds as follows:
 *   void                                                        HOST_VOID
 *   long, short, sint32, Boolean, bool                          HOST_INT32 (Boolean and bool: 0 or 1)
 *   uint32, ulong                                               HOST_UINT32
 *   uint64                                                      HOST_UINT64
 *   float                                                       HOST_FLOAT32
 *   double                                                      HOST_FLOAT64
 *   complex                                                     HOST_COMPLEX
 *   string, dm_string, char*                                    HOST_STRING
 *   ImageRef, BasicImage, RealImagePtr, ComplexImagePtr, Image* HOST_IMAGE
 *   TagGroup                                                    HOST_TAG_GROUP
 *   ScriptObject                                                HOST_SCRIPT_OBJECT
 *   Function                                                    HOST_FUNCTION
 *   ScriptClass                                                 HOST_SCRIPT_CLASS
 *   Throwable                                                   HOST_THROWABLE
 *   void*                                                       HOST_POINTER
 *   any other type followed by *                                HOST_OUTPUT; its cell has the kind of that type
 * A type followed by "..." stands for any number of arguments of that type. Parameter names have no meaning. */
typedef enum host_kind
{
    HOST_VOID = 0,
    HOST_INT32 = 1,
    HOST_UINT32 = 2,
    HOST_UINT64 = 3,
    HOST_FLOAT32 = 4,
    HOST_FLOAT64 = 5,
    HOST_COMPLEX = 6,
    HOST_STRING = 7,
    HOST_IMAGE = 8,
    HOST_TAG_GROUP = 9,
    HOST_SCRIPT_OBJECT = 10,
    HOST_FUNCTION = 11,
    HOST_SCRIPT_CLASS = 12,
    HOST_THROWABLE = 13,
    HOST_POINTER = 14,
    HOST_OUTPUT = 15
} host_kind;

/* One argument or result. `kind` selects the valid member of the union.
 *
 * Arguments: objects are lent. A null object is a null reference; strings are never null.
 * Results: an object is counted for the caller.
 * HOST_OUTPUT: `cell` points to a value of the caller, or is null if the caller does not need this output. The cell
 * initially contains the caller's current value and owns its object: to replace the object, the callee releases it and
 * stores one that it has counted for the caller. A failing call leaves all cells unchanged. */
typedef struct host_value
{
    uint32_t kind; /* a host_kind */
    uint32_t reserved;
    union
    {
        int32_t i32;
        uint32_t u32;
        uint64_t u64;
        float f32;
        double f64;
        double complex_parts[2]; /* real, imaginary */
        host_object* object;
        void* pointer;
        struct host_value* cell;
    } as;
} host_value;

/* A script function of the library.
 *   context     the pointer passed to register_function
 *   arguments   in prototype order, converted to the prototype's kinds
 *   count       the number of arguments
 *   result      receives a value of the prototype's result kind; unchanged on failure
 *   error       on failure, receives a throwable counted for the caller, or null if none could be created
 * Returns 0 on success, 1 on failure. */
typedef int32_t(HOST_CALL* host_native)(void* context, const host_value* arguments, uint32_t count, host_value* result,
                                        host_object** error);

/* A floating window of the library. The host decides when to create, show, hide and close it. */
typedef struct host_floating_window
{
    uint32_t size;     /* bytes of this structure */
    const char* title; /* copied by the host */
    void* module;      /* handle of the library's module (HINSTANCE) */
    void* context;     /* passed to both callbacks */
    /* Creates the window, hidden, as a child of `parent` (an HWND, or null) and returns it (an HWND). Returns null on
     * failure, after the library has reported the error. */
    void*(HOST_CALL* create)(void* context, void* parent);
    /* Destroys a window that `create` returned. */
    void(HOST_CALL* destroy)(void* context, void* window);
} host_floating_window;

/* Part of an image's data. NewImageDataSlice( data_type, num_dim, start, size, ... ) creates a description of it, with
 * a start and a size for each dimension; ExtractImageDataSequenceFromScriptObjectOrFail unpacks the description. */
typedef struct host_data_slice
{
    uint32_t data_type; /* a host_element */
    uint32_t num_dim;   /* 1 to 3 */
    int32_t start[3];   /* in elements, x first */
    int32_t extent[3];  /* in elements, x first */
} host_data_slice;

/* The element types of images, as the host's image functions accept and return them. The library does not compute with
 * binary images or with other codes (colours, packed spectra). */
typedef enum host_element
{
    HOST_ELEMENT_INT16 = 1,
    HOST_ELEMENT_FLOAT32 = 2,
    HOST_ELEMENT_COMPLEX64 = 3, /* two floats */
    HOST_ELEMENT_UINT8 = 6,
    HOST_ELEMENT_INT32 = 7,
    HOST_ELEMENT_INT8 = 9,
    HOST_ELEMENT_UINT16 = 10,
    HOST_ELEMENT_UINT32 = 11,
    HOST_ELEMENT_FLOAT64 = 12,
    HOST_ELEMENT_COMPLEX128 = 13, /* two doubles */
    HOST_ELEMENT_BINARY = 14      /* one byte, 0 or 1 */
} host_element;

/* Access modes of ImageGetLockedData. */
#define HOST_LOCK_READ 1u
#define HOST_LOCK_WRITE 2u

/* ImageData_GetSlice stores `des_num_dim` pairs of size and stride, both in elements, x first. */

typedef struct host_link host_link;

typedef struct host_table
{
    /* Add and release a reference to the link itself. Any thread. These are the first two operations in every version
     * of the table, and the only ones that DMPlugIn_Link_2 calls. */
    void(HOST_CALL* add_reference)(host_link* link);
    void(HOST_CALL* release)(host_link* link);

    /* Size of this table in bytes. A later host may append entries. */
    uint64_t size;

    /* Add and release a reference to an object. Null is ignored. */
    void(HOST_CALL* object_add_reference)(host_link* link, host_object* object);
    void(HOST_CALL* object_release)(host_link* link, host_object* object);

    /* Creates a string of `length` bytes, counted for the caller. Returns null when memory runs out. */
    host_object*(HOST_CALL* string_new)(host_link* link, const char* text, uint64_t length);
    /* Returns the text of a string object, zero-terminated, and stores its length in bytes in *length unless `length`
     * is null. The text is valid as long as the object. Returns null if `string` is not a live string. */
    const char*(HOST_CALL* string_text)(host_link* link, host_object* string, uint64_t* length);

    /* Stores the host's version (major in the top byte, minor in the next, patch in the low 16 bits) and returns 1.
     * Returns 0 if the host has no version. */
    int32_t(HOST_CALL* version)(host_link* link, uint32_t* version);

    /* Returns the host function with exactly this prototype text, counted for the caller; null if there is none. */
    host_object*(HOST_CALL* find_function)(host_link* link, const char* prototype);
    /* Returns the method of a script object with this name and prototype (string objects, lent), counted for the
     * caller; null if there is none. `script_object` must not be null. */
    host_object*(HOST_CALL* find_method)(host_link* link, host_object* script_object, host_object* name,
                                         host_object* prototype);
    /* Calls a function, or a method with its script object as the first argument. Arguments, result and error follow
     * host_native. `result` may be null: the host then releases the result. */
    int32_t(HOST_CALL* call)(host_link* link, host_object* function, const host_value* arguments, uint32_t count,
                             host_value* result, host_object** error);
    /* Returns the text of a throwable as a string object, counted for the caller; null if `throwable` is none. */
    host_object*(HOST_CALL* throwable_text)(host_link* link, host_object* throwable);

    /* Makes `prototype` (copied) callable from scripts; `context` is passed to each call. Returns 0 on success. Returns
     * 1, with *error as in host_native, if the prototype cannot be parsed or is already registered. */
    int32_t(HOST_CALL* register_function)(host_link* link, const char* prototype, host_native native, void* context,
                                          host_object** error);
    /* Withdraws a registered function. An unknown prototype is ignored. */
    void(HOST_CALL* withdraw_function)(host_link* link, const char* prototype);

    /* Returns 1 if the host has an error manager, else 0. */
    int32_t(HOST_CALL* has_error_manager)(host_link* link);
    /* Passes an error to the host's error manager. A host without one may still show the text. Any thread. */
    void(HOST_CALL* report_error)(host_link* link, uint32_t code, const char* text);

    /* Adds `ticks` to the trace counter `name` and increments its number of reports. Ticks are those of
     * QueryPerformanceCounter on Windows, nanoseconds elsewhere. Any thread. */
    void(HOST_CALL* trace_add)(host_link* link, const char* name, int64_t ticks);

    /* Registers a floating window under its title. Returns 0 on success; 1, with *error as in host_native, on
     * failure. */
    int32_t(HOST_CALL* register_floating_window)(host_link* link, const host_floating_window* window,
                                                 host_object** error);
    /* Closes a registered floating window if it is open, and withdraws it. An unknown title is ignored. */
    void(HOST_CALL* withdraw_floating_window)(host_link* link, const char* title);

    /* Returns 1 if the user has asked to stop the running call, else 0. The library asks now and then in long loops; on
     * 1 the call fails with the text "The call was interrupted.". Read only if `size` covers it: earlier hosts do not
     * have it. */
    int32_t(HOST_CALL* is_interrupted)(host_link* link);
} host_table;

struct host_link
{
    const host_table* table;
};

/* The library's exported entry points, in the order in which a host calls them. No exception leaves them.
 *
 *   DMPlugIn_GetVersion             returns HOST_LINK_PROTOCOL
 *   DMPlugIn_Link_2                 adds a reference to the link, stores it and releases the previous link; null only
 *                                   releases; the current link again has no effect
 *   PlugInRegisterFloatingWindows
 *   PlugInStartup                   registers all script functions and the floating window
 *   PlugInRun
 *   PlugInRequestClose              returns non-zero if the host may close
 *   PlugInPrepareClose
 *   PlugInCleanup
 *   PlugInShutdown                  releases all objects and withdraws all registrations; handlers and tag groups that
 *                                   a later ZXSetZentrixHandler replaced stay referenced
 *   DMPlugIn_Link_2( null )
 *
 * Objects belong to the link through which the library got them. A host that replaces or removes the link without a
 * PlugInShutdown does not get them back: the library neither uses nor releases them any more. */
typedef int32_t(HOST_CALL* host_entry_get_version)(void);
typedef void(HOST_CALL* host_entry_link)(host_link* link);
typedef void(HOST_CALL* host_entry)(void);
typedef int32_t(HOST_CALL* host_entry_request_close)(void);

#ifdef __cplusplus
}
#endif

#endif

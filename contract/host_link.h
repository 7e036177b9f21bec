/*
 * The contract between the plug-in library and its host: plain C data and one table of functions. Nothing of C++
 * crosses it, neither a type nor an exception; all text is UTF-8.
 *
 * The host hands a host_link to the library's entry point DMPlugIn_Link_2. Everything else that the library asks of the
 * host, and every script function that it offers, goes through the table that the link points to.
 *
 * Thread: unless a comment says otherwise, every function of the table and every native function is called on the
 * host's main thread only.
 *
 * Ownership: objects are counted. "Lent" means that the caller keeps its reference and the callee adds one if it wants
 * to keep the object; "counted for the caller" means that the caller has to release it.
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

/* What a host_value holds. A prototype's type words map to kinds like this (a parameter's name is not part of it):
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
 *   any other type followed by *                                HOST_OUTPUT, its cell of the kind before the *
 * A type followed by "..." takes any number of further arguments of that type. */
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

/* One argument or result. `kind` always says which member counts.
 *
 * Arguments: objects are lent; a null object is a null reference (strings are never null). Results: an object is
 * counted for the caller.
 * HOST_OUTPUT: `cell` is a value of the caller's, or null where the caller wants no such output. The cell starts with
 * the caller's present value and always owns the object it holds: who stores another object releases the former one
 * and stores a counted one. A failing call leaves every cell as it was. */
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

/* A script function of the library. `arguments` come in prototype order, converted to the prototype's kinds; `count` is
 * their number. Fills *result with a value of the prototype's kind and returns 0; or returns 1, leaves *result alone
 * and stores in *error a throwable counted for the caller (or null, when not even that could be made). */
typedef int32_t(HOST_CALL* host_native)(void* context, const host_value* arguments, uint32_t count, host_value* result,
                                        host_object** error);

/* A floating window that the host creates, shows, hides and closes. All callbacks run on the main thread. */
typedef struct host_floating_window
{
    uint32_t size;     /* bytes of this structure */
    const char* title; /* copied by the host */
    void* module;      /* handle of the library's module (HINSTANCE) */
    void* context;     /* handed to both callbacks */
    /* Creates the window hidden, as a child of `parent` (an HWND, or null), and returns it (an HWND); null on failure,
     * which the library has reported. */
    void*(HOST_CALL* create)(void* context, void* parent);
    /* Destroys a window that `create` returned. */
    void(HOST_CALL* destroy)(void* context, void* window);
} host_floating_window;

/* A description of part of an image's data, as ExtractImageDataSequenceFromScriptObjectOrFail stores it and
 * NewImageDataSlice( data_type, num_dim, start, size, ... ) makes it: a start and a size for each dimension. */
typedef struct host_data_slice
{
    uint32_t data_type; /* the host's code of the element type */
    uint32_t num_dim;   /* 1 to 3 */
    int32_t start[3];
    int32_t extent[3];
} host_data_slice;

/* The codes of an image's element type, as the host's image functions take and return them. Other codes
 * (colours, packed spectra) and binary images are carried as they are and never computed with. */
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

/* Element strides and sizes come from ImageData_GetSlice as `des_num_dim` pairs (size, stride in elements), x first. */

typedef struct host_link host_link;

typedef struct host_table
{
    /* Count the references to the link itself. Any thread. They are the first two operations whatever follows. */
    void(HOST_CALL* add_reference)(host_link* link);
    void(HOST_CALL* release)(host_link* link);

    /* Bytes of this table: a later host may append entries. */
    uint64_t size;

    /* Count the references to an object; null is allowed and ignored. */
    void(HOST_CALL* object_add_reference)(host_link* link, host_object* object);
    void(HOST_CALL* object_release)(host_link* link, host_object* object);

    /* Makes a string of `length` bytes, counted for the caller; null when memory runs out. */
    host_object*(HOST_CALL* string_new)(host_link* link, const char* text, uint64_t length);
    /* The text of a string object, zero-terminated, valid while the object lives; *length may be null. Null when
     * `string` is not a live string. */
    const char*(HOST_CALL* string_text)(host_link* link, host_object* string, uint64_t* length);

    /* Stores the host's version (major in the top byte, minor in the next, patch in the low 16 bits) and returns 1;
     * returns 0 when the host tells none. */
    int32_t(HOST_CALL* version)(host_link* link, uint32_t* version);

    /* The host function of exactly this prototype text, counted for the caller; null when there is none. */
    host_object*(HOST_CALL* find_function)(host_link* link, const char* prototype);
    /* The method of a script object by name and prototype (string objects, lent), counted for the caller; null when the
     * object has no such method. `script_object` must not be null. */
    host_object*(HOST_CALL* find_method)(host_link* link, host_object* script_object, host_object* name,
                                         host_object* prototype);
    /* Calls a function or a method (the script object is then the first argument). Same rules as host_native. `result`
     * may be null when the result is not wanted; it is then released by the host. */
    int32_t(HOST_CALL* call)(host_link* link, host_object* function, const host_value* arguments, uint32_t count,
                             host_value* result, host_object** error);
    /* The text of a throwable as a string object, counted for the caller; null when `throwable` is not one. */
    host_object*(HOST_CALL* throwable_text)(host_link* link, host_object* throwable);

    /* Makes `prototype` (copied) callable from scripts. Returns 0; or 1 with *error as in host_native when the
     * prototype cannot be read or is registered already. `context` is handed back at each call. */
    int32_t(HOST_CALL* register_function)(host_link* link, const char* prototype, host_native native, void* context,
                                          host_object** error);
    /* Takes a registered function back; an unknown prototype is ignored. */
    void(HOST_CALL* withdraw_function)(host_link* link, const char* prototype);

    /* 1 when the host has an error manager. */
    int32_t(HOST_CALL* has_error_manager)(host_link* link);
    /* Hands an error to the host's error manager; without one the host may still show the text. Any thread. */
    void(HOST_CALL* report_error)(host_link* link, uint32_t code, const char* text);

    /* Adds `ticks` (of QueryPerformanceCounter, or of the monotonic clock) to the trace counter `name` and counts one
     * report. Any thread. */
    void(HOST_CALL* trace_add)(host_link* link, const char* name, int64_t ticks);

    /* Registers a floating window under its title. Returns 0; or 1 with *error as in host_native. */
    int32_t(HOST_CALL* register_floating_window)(host_link* link, const host_floating_window* window,
                                                 host_object** error);
    /* Takes a registered floating window back, closing it first; an unknown title is ignored. */
    void(HOST_CALL* withdraw_floating_window)(host_link* link, const char* title);
} host_table;

struct host_link
{
    const host_table* table;
};

/* The library's exported entry points, under these names and in the order in which a host calls them. */
typedef int32_t(HOST_CALL* host_entry_get_version)(void);
typedef void(HOST_CALL* host_entry_link)(host_link* link); /* null releases the present link */
typedef void(HOST_CALL* host_entry)(void);                 /* PlugInRegisterFloatingWindows, PlugInStartup, ... */
typedef int32_t(HOST_CALL* host_entry_request_close)(void);

#ifdef __cplusplus
}
#endif

#endif

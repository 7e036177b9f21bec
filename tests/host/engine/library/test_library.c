/* A small library in plain C that uses the contract alone. The host's tests load it. Its script function breaks the
 * rules of the contract on demand. Each entry point reports its name to the error manager. */
#include "contract/host_link.h"

#include <stddef.h>
#include <string.h>

#ifdef _WIN32
#define ENTRY __declspec(dllexport)
#else
#define ENTRY __attribute__((visibility("default")))
#endif

static host_link* link;
static host_object* kept; /* an object that a misbehaving call does not release */

static host_object* make_string(const char* text) { return link->table->string_new(link, text, strlen(text)); }

static void release(host_object* object) { link->table->object_release(link, object); }

static host_value object_value(uint32_t kind, host_object* object)
{
    host_value value;
    memset(&value, 0, sizeof value);
    value.kind = kind;
    value.as.object = object;
    return value;
}

static host_value number_value(uint32_t number)
{
    host_value value = object_value(HOST_UINT32, NULL);
    value.as.u32 = number;
    return value;
}

static host_value output_value(host_value* cell, uint32_t kind)
{
    host_value value = object_value(HOST_OUTPUT, NULL);
    *cell = object_value(kind, NULL);
    value.as.cell = cell;
    return value;
}

static int32_t call_host(const char* prototype, const host_value* arguments, uint32_t count, host_value* result,
                         host_object** error)
{
    host_object* function = link->table->find_function(link, prototype);
    const int32_t failed = link->table->call(link, function, arguments, count, result, error);
    release(function);
    return failed;
}

static int32_t fail(host_object** error, const char* text)
{
    host_value argument = object_value(HOST_STRING, make_string(text)), made;
    if (call_host("Throwable NewThrowableFromString( dm_string )", &argument, 1, &made, error) == 0)
        *error = made.as.object;
    release(argument.as.object);
    return 1;
}

static int32_t call_lock(host_object* lock, const char* name, const char* prototype, host_object** error)
{
    host_object* name_string = make_string(name);
    host_object* prototype_string = make_string(prototype);
    host_object* method = link->table->find_method(link, lock, name_string, prototype_string);
    host_value self = object_value(HOST_SCRIPT_OBJECT, lock);
    const int32_t failed = link->table->call(link, method, &self, 1, NULL, error);
    release(method);
    release(prototype_string);
    release(name_string);
    return failed;
}

static int32_t lock_memory(host_object* lock, host_object** error)
{
    return call_lock(lock, "LockMemory", "void LockMemory( ScriptObject self )", error);
}

static int32_t unlock_memory(host_object* lock, host_object** error)
{
    return call_lock(lock, "UnlockMemory", "void UnlockMemory(ScriptObject self)", error);
}

static int32_t new_read_lock(host_object* image, host_object** lock, host_object** error)
{
    host_value arguments[3], result;
    int32_t failed;
    arguments[0] = object_value(HOST_IMAGE, image);
    arguments[1] = number_value(HOST_LOCK_READ);
    arguments[2] = object_value(HOST_SCRIPT_OBJECT, NULL);
    failed =
        call_host("ScriptObject ImageGetLockedData( BasicImage, ulong, ScriptObject )", arguments, 3, &result, error);
    *lock = failed ? NULL : result.as.object;
    return failed;
}

/* The data of a 2D image of floats. */
static int32_t get_slice(host_object* lock, float** data, host_object** error)
{
    static const char prototype[] =
        "void *ImageData_GetSlice( ScriptObject img_src, uint32 slice_index, uint32 des_num_dim, uint32 *act_num_dim, "
        "uint32 *data_type, uint32 *pack_style, sint32 *dimension_info...)";
    host_value arguments[10], cells[10], result;
    int i;
    arguments[0] = object_value(HOST_SCRIPT_OBJECT, lock);
    arguments[1] = number_value(0);
    arguments[2] = number_value(2);
    for (i = 3; i < 10; ++i) arguments[i] = output_value(&cells[i], i < 6 ? HOST_UINT32 : HOST_INT32);
    if (call_host(prototype, arguments, 10, &result, error)) return 1;
    *data = (float*)result.as.pointer;
    return 0;
}

/* "void TestMisbehave( ImageRef img, string how, double * output )": breaks the rule named by `how` */
static int32_t HOST_CALL test_misbehave(void* context, const host_value* arguments, uint32_t count, host_value* result,
                                        host_object** error)
{
    const char* how = link->table->string_text(link, arguments[1].as.object, NULL);
    host_object* string = make_string("text");
    host_object* lock = NULL;
    host_value wrong = object_value(HOST_STRING, string);
    float* data;
    int32_t failed = 0;
    (void)context, (void)count;
    *result = object_value(HOST_VOID, NULL);
    if (new_read_lock(arguments[0].as.object, &lock, error)) return release(string), 1;
    if (!strcmp(how, "release twice")) release(string);
    if (!strcmp(how, "use after release")) release(string), link->table->string_text(link, string, NULL), string = NULL;
    if (!strcmp(how, "foreign pointer")) link->table->object_add_reference(link, (host_object*)&wrong);
    if (!strcmp(how, "release lent")) release(arguments[0].as.object);
    if (!strcmp(how, "unlocked access")) failed = get_slice(lock, &data, error);
    if (!strcmp(how, "unlock twice")) failed = unlock_memory(lock, error);
    if (!strcmp(how, "drop locked")) failed = lock_memory(lock, error);
    if (!strcmp(how, "wrong kind")) failed = call_host("void ImageDataChanged( ImageRef )", &wrong, 1, NULL, error);
    if (!strcmp(how, "wrong count")) failed = call_host("void ImageDataChanged( ImageRef )", &wrong, 0, NULL, error);
    if (!strcmp(how, "null string"))
        wrong.as.object = NULL, failed = call_host("void OkDialog( string )", &wrong, 1, NULL, error);
    if (!strcmp(how, "fail and write")) arguments[2].as.cell->as.f64 = 1, failed = fail(error, "Failed on purpose.");
    if (!strcmp(how, "wrong result")) result->kind = HOST_FLOAT64;
    if (!strcmp(how, "write under read lock") && !lock_memory(lock, error) && !get_slice(lock, &data, error)) {
        data[0] += 1;
        unlock_memory(lock, error);
    }
    if (!strcmp(how, "keep a lock")) {
        failed = lock_memory(lock, error);
        kept = lock;
        lock = NULL;
    }
    release(lock);
    release(string);
    return failed;
}

static const char misbehave_prototype[] = "void TestMisbehave( ImageRef img, string how, double * output )";
static int the_window;

static void* HOST_CALL create_window(void* context, void* parent)
{
    link->table->report_error(link, 0, "window created");
    return parent ? NULL : context;
}

static void HOST_CALL destroy_window(void* context, void* window)
{
    link->table->report_error(link, 0, context == window ? "window destroyed" : "another window destroyed");
}

static void report(const char* entry)
{
    if (link) link->table->report_error(link, 0, entry);
}

ENTRY int32_t DMPlugIn_GetVersion(void) { return HOST_LINK_PROTOCOL; }

ENTRY void DMPlugIn_Link_2(host_link* new_link)
{
    if (new_link == link) return;
    if (new_link) new_link->table->add_reference(new_link);
    if (link) link->table->release(link);
    link = new_link;
    report("DMPlugIn_Link_2");
}

ENTRY void PlugInRegisterFloatingWindows(void)
{
    host_floating_window window = {sizeof window, "Test", NULL, &the_window, create_window, destroy_window};
    host_object* error = NULL;
    report("PlugInRegisterFloatingWindows");
    link->table->register_floating_window(link, &window, &error);
    release(error);
}

ENTRY void PlugInStartup(void)
{
    host_object* error = NULL;
    report("PlugInStartup");
    if (link->table->register_function(link, misbehave_prototype, test_misbehave, NULL, &error))
        report("registration failed");
    release(error);
}

ENTRY void PlugInRun(void) { report("PlugInRun"); }

ENTRY int32_t PlugInRequestClose(void)
{
    report("PlugInRequestClose");
    return 7;
}

ENTRY void PlugInPrepareClose(void) { report("PlugInPrepareClose"); }

ENTRY void PlugInCleanup(void) { report("PlugInCleanup"); }

ENTRY void PlugInShutdown(void)
{
    report("PlugInShutdown");
    link->table->withdraw_function(link, misbehave_prototype);
    link->table->withdraw_floating_window(link, "Test");
    kept = NULL; /* not released */
}

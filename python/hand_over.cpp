#include "python/hand_over.h"

#include <atomic>
#include <chrono>
#include <cstdint>

#include "host/engine/host_thread.h"
#include "python/python_object.h"

namespace zentrix::python {

namespace {

using namespace std::chrono_literals;
using clock = std::chrono::steady_clock;
using host::host_thread;

/// A method of a handler that lasts longer is taken to wait for a thread whose call is queued.
constexpr auto longest_callback = 10s;
/// Forking waits as long for the end of the running call.
constexpr auto longest_wait_for_fork = 2s;
/// The end of the interpreter waits as long for a call that was asked to stop.
constexpr auto longest_wait_at_end = 2s;

constexpr char callback_waits[] =
    "A method of a handler has kept the host busy for more than 10 s. It may be waiting for this thread, so this call "
    "was not begun.";
constexpr char interpreter_ends[] = "The interpreter is ending: scripts can no longer run.";

constexpr std::int64_t not_in_callback = -1;

/// State of the host's thread. The interpreter lock protects the first three members.
struct thread_state
{
    unsigned long id = 0;  ///< Python's number of the thread
    int callbacks = 0;     ///< callbacks that run, each inside the one before
    bool has_ended = false;
    PyThreadState* python = nullptr;  ///< used by the thread itself only, as is `context`
    PyObject* context = nullptr;      ///< the context variables of the thread that waits for the running call
    std::atomic<std::int64_t> callback_since{not_in_callback};  ///< ticks at which the running Python code started
};

thread_state& the_state()
{
    static thread_state state;
    return state;
}

std::int64_t now() { return clock::now().time_since_epoch().count(); }

/// One Python thread state serves all callbacks, so that thread-local data of Python last as long as the thread.
void start_python_thread()
{
    PyGILState_STATE ensured = PyGILState_UNLOCKED;
    try {
        ensured = PyGILState_Ensure();
    } catch (...) {  // the unwinding of a thread that Python ends
        stop_this_thread();
    }
    (void)ensured;  // released by end_python_thread
    try {
        py::module_::import("threading").attr("current_thread")().attr("name") = "zentrix host";
    } catch (py::error_already_set& raised) {
        raised.discard_as_unraisable("zentrix");
    }
    the_state().id = PyThread_get_thread_ident();
    the_state().callbacks = 0;
    the_state().callback_since = not_in_callback;
    the_state().python = PyEval_SaveThread();
}

void end_python_thread()
{
    try {
        PyEval_RestoreThread(the_state().python);
    } catch (...) {  // the unwinding of a thread that Python ends
        stop_this_thread();
    }
    PyGILState_Release(PyGILState_UNLOCKED);
}

host_thread& the_thread()
{
    static auto& thread = *new host_thread{start_python_thread, end_python_thread};  // outlives the interpreter
    return thread;
}

bool callback_lasts_long()
{
    const auto since = the_state().callback_since.load();
    return since != not_in_callback && clock::duration{now() - since} > longest_callback;
}

/// Raises the class of `error` in the Python code that runs on the host's thread, if any does.
void raise_in_callback(py::handle error)
{
    if (the_state().callbacks > 0) PyThreadState_SetAsyncExc(the_state().id, py::type::of(error).ptr());
}

/// The answer of a waiting thread, which handles signals and notices a callback that lasts too long.
class waiting
{
  public:
    explicit waiting(ended_call& ended) : ended_{ended} {}

    host_thread::wish ask(host_thread::progress seen)
    {
        if (seen == host_thread::progress::queued && callback_lasts_long()) {
            waits_in_vain_ = true;
            return host_thread::wish::give_up;
        }
        const interpreter_lock locked;
        if (PyErr_CheckSignals() == 0) return host_thread::wish::wait;
        ended_.signal = take_raised_error();
        if (seen == host_thread::progress::running) raise_in_callback(ended_.signal);
        return host_thread::wish::give_up;
    }

    bool waits_in_vain() const noexcept { return waits_in_vain_; }

  private:
    ended_call& ended_;
    bool waits_in_vain_ = false;
};

/// Runs the work on the host's thread and collects what it leaves.
void run_and_collect(const std::function<void()>& work, ended_call& ended)
{
    try {
        work();
    } catch (...) {
        ended.thrown = std::current_exception();
    }
    ended.cause = take_kept_error();
}

}  // namespace

bool on_host_thread() noexcept { return the_thread().is_current(); }

bool is_call_given_up() noexcept { return the_thread().is_given_up(); }

ended_call hand_over(const std::function<void()>& work)
{
    ended_call ended;
    if (on_host_thread()) {
        const auto enclosing = the_state().callback_since.exchange(not_in_callback);
        {
            const interpreter_unlock others_may_run;
            run_and_collect(work, ended);
        }
        the_state().callback_since = enclosing;
        return ended;
    }
    if (the_state().has_ended) {  // no other thread can interfere
        run_and_collect(work, ended);
        return ended;
    }
    const auto context = py::reinterpret_steal<py::object>(PyContext_CopyCurrent());
    if (!context) throw py::error_already_set{};
    const auto run = [&] {
        the_state().context = context.ptr();
        run_and_collect(work, ended);
        the_state().context = nullptr;
    };
    waiting until_ended{ended};
    bool was_begun = false;
    {
        const interpreter_unlock others_may_run;
        was_begun = the_thread().run(run, [&](auto seen) { return until_ended.ask(seen); });
    }
    if (until_ended.waits_in_vain() && !was_begun) throw host::script_error{callback_waits};
    return ended;
}

void end_host_thread(const std::function<void()>& last)
{
    if (on_host_thread()) return;
    const interpreter_unlock others_may_run;
    the_thread().refuse(interpreter_ends);
    if (!the_thread().run_last(last, longest_wait_at_end)) return;
    the_thread().finish();
    the_state().has_ended = true;
}

void register_fork_handlers()
{
    const auto with_thread = [](auto action) {
        return py::cpp_function{[action] {
            const interpreter_unlock others_may_run;
            action(the_thread());
        }};
    };
    py::module_::import("os").attr("register_at_fork")(
        py::arg("before") = with_thread([](host_thread& thread) { thread.before_fork(longest_wait_for_fork); }),
        py::arg("after_in_parent") = with_thread([](host_thread& thread) { thread.after_fork_in_parent(); }),
        py::arg("after_in_child") = py::cpp_function{[] { the_thread().after_fork_in_child(); }});
}

callback_scope::callback_scope() : is_on_host_thread_{on_host_thread()}
{
    if (!is_on_host_thread_) return;
    auto& state = the_state();
    enclosing_ = state.callback_since.exchange(now());
    if (state.callbacks++ == 0 && state.context && PyContext_Enter(state.context) != 0) PyErr_Clear();
}

callback_scope::~callback_scope()
{
    if (!is_on_host_thread_) return;
    auto& state = the_state();
    state.callback_since = enclosing_;
    if (--state.callbacks > 0) return;
    PyThreadState_SetAsyncExc(state.id, nullptr);  // an interruption that came too late is not for the next callback
    if (state.context && PyContext_Exit(state.context) != 0) PyErr_Clear();
}

}  // namespace zentrix::python

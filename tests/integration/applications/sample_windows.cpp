// A program with windows, for the tests. Obeys one command a line on standard input and answers
// each with one line: "new KEY=VALUE...", "many COUNT", "vanish COUNT", "close ID", "activate ID",
// "title ID TEXT", "state ID", "publish", "asked". See `make` for the keys.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <poll.h>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

namespace {

using Options = std::map<std::string, std::string>;

class Sample {
  public:
    Sample() : connection_(::xcb_connect(nullptr, nullptr)) {
        const xcb_setup_t* const setup = ::xcb_get_setup(connection_);
        screen_ = setup == nullptr ? nullptr : ::xcb_setup_roots_iterator(setup).data;
    }

    ~Sample() { ::xcb_disconnect(connection_); }

    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    [[nodiscard]] bool isConnected() const {
        return screen_ != nullptr && ::xcb_connection_has_error(connection_) == 0;
    }

    int run() {
        std::string input;
        for (;;) {
            ::xcb_flush(connection_);
            takeEvents();
            pollfd sources[] = {{STDIN_FILENO, POLLIN, 0},
                                {::xcb_get_file_descriptor(connection_), POLLIN, 0}};
            if (::poll(sources, 2, -1) < 0 || !isConnected()) {
                return EXIT_FAILURE;
            }
            if (sources[0].revents == 0) {
                continue;
            }
            char buffer[4096];
            const ssize_t length = ::read(STDIN_FILENO, buffer, sizeof buffer);
            if (length <= 0) {
                return EXIT_SUCCESS;
            }
            input.append(buffer, static_cast<std::size_t>(length));
            for (std::size_t end = 0; (end = input.find('\n')) != std::string::npos;) {
                std::cout << obey(input.substr(0, end)) << std::endl;
                input.erase(0, end + 1);
            }
        }
    }

  private:
    std::string obey(const std::string& line) {
        std::istringstream words(line);
        std::string command;
        words >> command;
        if (command == "new") {
            return std::to_string(make(optionsIn(words)));
        }
        if (command == "asked") {
            takeEvents();
            return std::to_string(asked_);
        }
        std::uint32_t number = 0;
        words >> number;
        if (command == "many" || command == "vanish") {
            for (std::uint32_t count = 0; count < number; ++count) {
                const xcb_window_t window = make({});
                if (command == "vanish") {
                    ::xcb_destroy_window(connection_, window);
                }
            }
        } else if (command == "close") {
            ::xcb_destroy_window(connection_, number);
        } else if (command == "activate") {
            send(number, atom("_NET_ACTIVE_WINDOW"), 2);
        } else if (command == "publish") {
            publish();
        } else if (command == "state") {
            return std::to_string(numberIn(number, "WM_STATE"));
        } else if (command == "title") {
            std::string title;
            words >> title;
            setText(number, XCB_ATOM_WM_NAME, title);
        }
        synchronize();
        return "done";
    }

    /// What a window manager would do: lists all windows, the last of them as the active one.
    void publish() {
        ::xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, screen_->root,
                              atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW, 32,
                              static_cast<std::uint32_t>(made_.size()), made_.data());
        ::xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, screen_->root,
                              atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &made_.back());
    }

    static Options optionsIn(std::istringstream& words) {
        Options options;
        for (std::string word; words >> word;) {
            options[word.substr(0, word.find('='))] = word.substr(word.find('=') + 1);
        }
        return options;
    }

    /// class=INSTANCE,CLASS (rawclass=TEXT: without any zero byte), type=dock, state=skip_taskbar,
    /// pid=NUMBER|none, machine=NAME|none, gtk=ID, title=BYTES, deaf=1: does not know WM_DELETE.
    xcb_window_t make(Options options) {
        const xcb_window_t window = ::xcb_generate_id(connection_);
        const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS;
        ::xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 10, 10, 200,
                            100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                            XCB_CW_EVENT_MASK, &events);
        setClass(window, options);
        setOwner(window, options);
        if (!options["type"].empty()) {
            setAtom(window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_" + options["type"]);
        }
        if (!options["state"].empty()) {
            setAtom(window, "_NET_WM_STATE", "_NET_WM_STATE_" + options["state"]);
        }
        if (!options["gtk"].empty()) {
            setText(window, atom("_GTK_APPLICATION_ID"), options["gtk"]);
        }
        if (!options["title"].empty()) {
            setText(window, XCB_ATOM_WM_NAME, std::string(std::stoul(options["title"]), 'x'));
        }
        if (options["deaf"].empty()) {
            setAtom(window, "WM_PROTOCOLS", "WM_DELETE_WINDOW");
        }
        ::xcb_map_window(connection_, window);
        made_.push_back(window);
        return window;
    }

    void setClass(xcb_window_t window, Options& options) {
        std::string name = options["class"].empty() ? "sample,Sample" : options["class"];
        std::replace(name.begin(), name.end(), ',', '\0');
        name += '\0';
        setText(window, XCB_ATOM_WM_CLASS,
                options["rawclass"].empty() ? name : options["rawclass"]);
    }

    void setOwner(xcb_window_t window, Options& options) {
        char host[256] = {};
        ::gethostname(host, sizeof host - 1);
        const std::string machine = options["machine"].empty() ? host : options["machine"];
        if (machine != "none") {
            setText(window, XCB_ATOM_WM_CLIENT_MACHINE, machine);
        }
        const std::string pid =
            options["pid"].empty() ? std::to_string(::getpid()) : options["pid"];
        if (pid != "none") {
            const auto number = static_cast<std::uint32_t>(std::stoul(pid));
            ::xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_PID"),
                                  XCB_ATOM_CARDINAL, 32, 1, &number);
        }
    }

    /// In parts: no request may be larger than the server's limit.
    void setText(xcb_window_t window, xcb_atom_t property, const std::string& text) {
        constexpr std::size_t part = 65536;
        for (std::size_t at = 0; at == 0 || at < text.size(); at += part) {
            const std::string piece = text.substr(at, part);
            ::xcb_change_property(connection_,
                                  at == 0 ? XCB_PROP_MODE_REPLACE : XCB_PROP_MODE_APPEND, window,
                                  property, XCB_ATOM_STRING, 8,
                                  static_cast<std::uint32_t>(piece.size()), piece.data());
        }
    }

    void setAtom(xcb_window_t window, const std::string& property, const std::string& value) {
        const xcb_atom_t number = atom(value);
        ::xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property),
                              XCB_ATOM_ATOM, 32, 1, &number);
    }

    std::uint32_t numberIn(xcb_window_t window, const std::string& property) {
        xcb_get_property_reply_t* const reply =
            ::xcb_get_property_reply(connection_,
                                     ::xcb_get_property(connection_, 0, window, atom(property),
                                                        XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
                                     nullptr);
        const bool isThere = reply != nullptr && reply->value_len > 0;
        const std::uint32_t number =
            isThere ? *static_cast<std::uint32_t*>(::xcb_get_property_value(reply)) : 0;
        std::free(reply);
        return number;
    }

    void send(xcb_window_t window, xcb_atom_t type, std::uint32_t value) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = type;
        message.data.data32[0] = value;
        ::xcb_send_event(connection_, 0, screen_->root,
                         XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                         reinterpret_cast<const char*>(&message));
    }

    xcb_atom_t atom(const std::string& name) {
        const auto known = atoms_.find(name);
        if (known != atoms_.end()) {
            return known->second;
        }
        xcb_intern_atom_reply_t* const reply = ::xcb_intern_atom_reply(
            connection_,
            ::xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr);
        const xcb_atom_t number = reply == nullptr ? xcb_atom_t{XCB_NONE} : reply->atom;
        std::free(reply);
        return atoms_[name] = number;
    }

    void synchronize() {
        std::free(
            ::xcb_get_input_focus_reply(connection_, ::xcb_get_input_focus(connection_), nullptr));
    }

    // Whoever is asked to close a window closes it.
    void takeEvents() {
        while (xcb_generic_event_t* const event = ::xcb_poll_for_event(connection_)) {
            if ((event->response_type & ~0x80) == XCB_CLIENT_MESSAGE) {
                ++asked_;
                ::xcb_destroy_window(connection_,
                                     reinterpret_cast<xcb_client_message_event_t*>(event)->window);
            }
            std::free(event);
        }
        ::xcb_flush(connection_);
    }

    xcb_connection_t* connection_;
    const xcb_screen_t* screen_ = nullptr;
    std::map<std::string, xcb_atom_t> atoms_;
    std::vector<xcb_window_t> made_;
    int asked_ = 0; ///< how many windows were asked to close
};

} // namespace

int main() {
    Sample sample;
    return sample.isConnected() ? sample.run() : EXIT_FAILURE;
}

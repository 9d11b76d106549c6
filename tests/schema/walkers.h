// Walkers over the wire classes. One fills an object and notes what it must look like on the wire; one looks
// whether what was read is the same; one looks whether nothing was read at all. Each value of a message
// differs from all others of that message, so that no two members can be mixed up unseen.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_WALKERS_H
#define SOAPWRAPPER_TESTS_SCHEMA_WALKERS_H

#include "xml_node.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "soapwrapperStub.h"

namespace schema
{

// The n-th value of a message, as the program holds it and as it stands in XML.
class Values
{
  public:
    int integer() { return static_cast<int>(alternating(1000003)); }
    LONG64 long_integer() { return alternating(1000000000039); }
    std::string text(const std::string& name) { return name + std::to_string(++count_) + " <&> \"'"; }
    // Three bytes, among them the ones that are neither text nor letters of the alphabet of base64.
    std::string bytes() { return std::string{static_cast<char>(++count_), '\0', '\xff'}; }

    static std::string as_xml(const std::string& text)
    {
        std::string xml;
        for (char c : text) {
            if (c == '<')
                xml += "&lt;";
            else if (c == '>')
                xml += "&gt;";
            else if (c == '&')
                xml += "&amp;";
            else
                xml += c;
        }
        return xml;
    }
    // Base64 of exactly three bytes.
    static std::string as_base64(const std::string& three)
    {
        static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        unsigned long word = 0;
        for (char c : three) word = word << 8 | static_cast<unsigned char>(c);
        return {alphabet[word >> 18 & 63], alphabet[word >> 12 & 63], alphabet[word >> 6 & 63],
                alphabet[word & 63]};
    }

  private:
    LONG64 alternating(LONG64 step)
    {
        ++count_;
        return count_ % 2 ? -step * count_ : step * count_;
    }

    int count_ = 0;
};

// A class with a choice holds the number of the one that is made, and the choices in a union.
#define ACCESS_CHOICE(NAME)                                                                                  \
    inline int& choice_made(ns1__##NAME& object)                                                             \
    {                                                                                                        \
        return object.__union_##NAME;                                                                        \
    }                                                                                                        \
    inline auto& choices(ns1__##NAME& object)                                                                \
    {                                                                                                        \
        return object.union_##NAME;                                                                          \
    }
ACCESS_CHOICE(AIOResultSnap)
ACCESS_CHOICE(EventBody)
ACCESS_CHOICE(VolumeSpecification)
#undef ACCESS_CHOICE

// How many choices such a class has.
struct ChoiceCounter {
    template <class Member>
    void operator()(const char*, Member&)
    {
    }
    template <class Class, class Pointee>
    void choice(Class&, int, const char*, Pointee*&)
    {
        ++count;
    }
    int count = 0;
};
template <class Class>
int choice_count(Class& object)
{
    ChoiceCounter counter;
    walk(counter, object);
    return counter.count;
}

// Which of `count` choices a type makes when the message as a whole is in its `round`-th round.
inline int choice_in_round(int round, int count)
{
    return (round - 1) % count + 1;
}

inline std::string held_bytes(const xsd__base64Binary& binary)
{
    if (!binary.__ptr) return {};
    return {reinterpret_cast<const char*>(binary.__ptr), static_cast<size_t>(binary.__size)};
}

// Fills every member of an object, and every member of what it points at. Owns all of it.
class Filler
{
  public:
    Filler(std::string name, int round) : round_(round) { node_.name = std::move(name); }

    const Node& node() const { return node_; }

    template <class Member>
    void operator()(const char* name, Member& member)
    {
        fill(name, member);
    }

    template <class Class, class Pointee>
    void choice(Class& object, int number, const char* name, Pointee*& member)
    {
        choice_made(object) = choice_in_round(round_, choice_count(object));
        if (number == choice_made(object)) {
            fill(name, member);
        } else {
            node_.other_choices.push_back(name);
        }
    }

  private:
    void leaf(const char* name, std::string xml) { node_.children.push_back({name, std::move(xml), {}, {}}); }

    void fill(const char* name, int& member)
    {
        member = values_.integer();
        leaf(name, std::to_string(member));
    }
    void fill(const char* name, LONG64& member)
    {
        member = values_.long_integer();
        leaf(name, std::to_string(member));
    }
    void fill(const char* name, bool& member)
    {
        member = true;
        leaf(name, "true");
    }
    void fill(const char* name, std::string& member)
    {
        member = values_.text(name);
        leaf(name, Values::as_xml(member));
    }
    void fill(const char* name, xsd__base64Binary& member)
    {
        const std::string content = values_.bytes();
        auto* copy = make<std::vector<unsigned char>>();
        copy->assign(content.begin(), content.end());
        member.__ptr = copy->data();
        member.__size = static_cast<int>(copy->size());
        leaf(name, Values::as_base64(content));
    }
    template <class Class>
    std::enable_if_t<std::is_class_v<Class>> fill(const char* name, Class& member)
    {
        Node parent = std::move(node_);
        node_ = Node{name, {}, {}, {}};
        walk(*this, member);
        parent.children.push_back(std::move(node_));
        node_ = std::move(parent);
    }
    template <class Pointee>
    void fill(const char* name, Pointee*& member)
    {
        member = make<Pointee>();
        fill(name, *member);
    }
    template <class Item>
    void fill(const char* name, std::vector<Item>& member)
    {
        member.resize(3);
        for (Item& item : member) fill(name, item);
    }

    template <class Object>
    Object* make()
    {
        auto object = std::make_shared<Object>();
        owned_.push_back(object);
        return object.get();
    }

    Values values_;
    int round_;
    Node node_;
    std::vector<std::shared_ptr<void>> owned_;
};

// Expects what a Filler of the same round puts in.
class FilledCheck
{
  public:
    explicit FilledCheck(int round) : round_(round) {}

    template <class Member>
    void operator()(const char* name, Member& member)
    {
        const testing::ScopedTrace trace(__FILE__, __LINE__, name);
        check(name, member);
    }

    template <class Class, class Pointee>
    void choice(Class& object, int number, const char* name, Pointee*& member)
    {
        const int expected = choice_in_round(round_, choice_count(object));
        if (number == 1) {
            EXPECT_EQ(choice_made(object), expected);
        }
        if (number == expected && choice_made(object) == expected) (*this)(name, member);
    }

  private:
    void check(const char*, int member) { EXPECT_EQ(member, values_.integer()); }
    void check(const char*, LONG64 member) { EXPECT_EQ(member, values_.long_integer()); }
    void check(const char*, bool member) { EXPECT_TRUE(member); }
    void check(const char* name, std::string& member) { EXPECT_EQ(member, values_.text(name)); }
    void check(const char*, xsd__base64Binary& member)
    {
        EXPECT_EQ(held_bytes(member), values_.bytes());
        EXPECT_EQ(member.id, nullptr);
        EXPECT_EQ(member.type, nullptr);
        EXPECT_EQ(member.options, nullptr);
    }
    template <class Class>
    std::enable_if_t<std::is_class_v<Class>> check(const char*, Class& member)
    {
        walk(*this, member);
    }
    template <class Pointee>
    void check(const char* name, Pointee* member)
    {
        ASSERT_NE(member, nullptr);
        check(name, *member);
    }
    template <class Item>
    void check(const char* name, std::vector<Item>& member)
    {
        ASSERT_EQ(member.size(), 3U);
        for (Item& item : member) check(name, item);
    }

    Values values_;
    int round_;
};

// Expects every member at its default.
class DefaultCheck
{
  public:
    template <class Member>
    void operator()(const char* name, Member& member)
    {
        const testing::ScopedTrace trace(__FILE__, __LINE__, name);
        check(member);
    }

    template <class Class, class Pointee>
    void choice(Class& object, int number, const char*, Pointee*&)
    {
        if (number == 1) {
            EXPECT_EQ(choice_made(object), 0);
        }
    }

  private:
    void check(int member) { EXPECT_EQ(member, 0); }
    void check(LONG64 member) { EXPECT_EQ(member, 0); }
    void check(bool member) { EXPECT_FALSE(member); }
    void check(const std::string& member) { EXPECT_EQ(member, ""); }
    void check(const xsd__base64Binary& member)
    {
        EXPECT_EQ(member.__ptr, nullptr);
        EXPECT_EQ(member.__size, 0);
    }
    template <class Pointee>
    void check(Pointee* member)
    {
        EXPECT_EQ(member, nullptr);
    }
    template <class Item>
    void check(const std::vector<Item>& member)
    {
        EXPECT_TRUE(member.empty());
    }
};

} // namespace schema

#endif

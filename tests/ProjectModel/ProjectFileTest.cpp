#include <ProjectModel/ProjectFile.h>
#include <ProjectModel/RandomProject.h>

#include <gtest/gtest.h>

namespace ProjectModel {

namespace {

TEST(ProjectFileTest, EncodesTheEmptyProjectAsItsFiveKeysInOrder) {
    EXPECT_EQ(encoded(Project::empty()), "{\n"
                                         "  \"photos\": [],\n"
                                         "  \"schemaVersion\": 2,\n"
                                         "  \"settings\": {},\n"
                                         "  \"sources\": [],\n"
                                         "  \"usesManualOrder\": false\n"
                                         "}");
}

TEST(ProjectFileTest, ReadsBackEveryProjectItWritesAndWritesTheSameBytesAgain) {
    Testing::RandomProject random{1};
    for (int i = 0; i < 1000; ++i) {
        const Project project = random.project();
        const std::string bytes = encoded(project);
        const Project decoded = decodeProject(bytes);
        ASSERT_EQ(decoded, project) << bytes;
        ASSERT_EQ(encoded(decoded), bytes);
    }
}

} // namespace

} // namespace ProjectModel

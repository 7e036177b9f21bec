"""All rows of the table, by topic."""

from . import elementwise_rows, filter_rows, job_rows, optics_rows, reciprocal_rows, statistics_rows

TOPICS = (
    job_rows.TOPIC,
    *optics_rows.TOPICS,
    *elementwise_rows.TOPICS,
    *filter_rows.TOPICS,
    *statistics_rows.TOPICS,
    *reciprocal_rows.TOPICS,
)
